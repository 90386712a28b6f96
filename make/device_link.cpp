// SPDX-License-Identifier: Apache-2.0
#include "make/device_link.h"

#include <algorithm>
#include <string>

#include "gray/gray_state.h"
#include "profile/new_profile.h"

namespace lumoxa::engine {
namespace {

constexpr uint64_t kMaxNodes = uint64_t{1} << 22;
/// Grids of tables of 8 bits by inputs: what bytes can tell apart, at a size worth having.
constexpr int kByteGrids[] = {0, 255, 255, 33, 17};

std::string asciiText(std::string text) {
    const auto isOther = [](char c) { return c < ' ' || c > '~'; };
    std::replace_if(text.begin(), text.end(), isOther, '?');
    return text;
}

uint32_t technologyOf(const ProfileView& profile) {
    constexpr uint32_t kValue = 8;
    const auto tag = profile.find(fourcc("tech"));
    return tag && tag->size() >= kValue + 4 ? tag->u32(kValue) : 0;
}

// profileSequenceDescType: what was linked (ICC.1:2001-04, 6.5.12). Makers and models have their
// numbers; their descriptions are those of the profiles.
TagBytes sequenceTag(const std::vector<ProfileImage>& images) {
    TagBytes tag = startOfTag(fourcc("pseq"));
    put32(tag, static_cast<uint32_t>(images.size()));
    for (const ProfileImage& image : images) {
        const ProfileView profile(image, 0);
        const icHeader& header = profile.header();
        put32(tag, header.manufacturer);
        put32(tag, header.model);
        put32(tag, static_cast<uint32_t>(header.attributes >> 32));
        put32(tag, static_cast<uint32_t>(header.attributes));
        put32(tag, technologyOf(profile));
        for (const std::string& text : {std::string(), profile.description()}) {
            const TagBytes description = descriptionTag(asciiText(text));
            tag.insert(tag.end(), description.begin(), description.end());
        }
    }
    return tag;
}

TagBytes whiteTag(const ProfileView& last) {
    const auto own = last.find(fourcc("wtpt"));
    constexpr uint32_t kSize = 20;
    if (!own || own->size() < kSize || own->type() != kTypeXyz) return xyzTag(kD50Xyz);
    return TagBytes(own->bytes().begin(), own->bytes().begin() + kSize);
}

void putNumbers(TagBytes& tag, const std::vector<uint16_t>& numbers, LinkPrecision precision) {
    for (const uint16_t number : numbers) {
        if (precision == LinkPrecision::k16) {
            put16(tag, number);
        } else {
            tag.push_back(static_cast<uint8_t>((number + 128U) / 257U));
        }
    }
}

std::vector<uint16_t> ramp(size_t entries) {
    std::vector<uint16_t> table(entries);
    for (size_t i = 0; i < entries; ++i)
        table[i] = static_cast<uint16_t>((i * 65535 + (entries - 1) / 2) / (entries - 1));
    return table;
}

// lut16Type or lut8Type (ICC.1:2001-04).
TagBytes lutTag(const TableForm& form, LinkPrecision precision) {
    constexpr uint32_t kOne = 0x10000;
    const bool wide = precision == LinkPrecision::k16;
    const auto inputs = static_cast<size_t>(form.grid.inputs());
    const auto outputs = static_cast<size_t>(form.grid.outputs);
    const size_t plain = wide ? 2 : 256;
    const size_t inEntries = form.inCurves.empty() ? plain : form.inCurves[0].size();
    const size_t outEntries = form.outCurves.empty() ? plain : form.outCurves[0].size();
    TagBytes tag = startOfTag(wide ? kTypeLut16 : kTypeLut8);
    for (const size_t count :
         {inputs, outputs, static_cast<size_t>(form.grid.points[0]), size_t{0}})
        tag.push_back(static_cast<uint8_t>(count));
    for (int i = 0; i < 9; ++i)
        put32(tag, i % 4 == 0 ? kOne : 0);  // the identity
    if (wide) {
        put16(tag, static_cast<uint32_t>(inEntries));
        put16(tag, static_cast<uint32_t>(outEntries));
    }
    for (size_t c = 0; c < inputs; ++c)
        putNumbers(tag, form.inCurves.empty() ? ramp(inEntries) : form.inCurves[c], precision);
    putNumbers(tag, form.grid.nodes, precision);
    for (size_t c = 0; c < outputs; ++c)
        putNumbers(tag, form.outCurves.empty() ? ramp(outEntries) : form.outCurves[c], precision);
    return tag;
}

/// Points of a grid that no other rule sizes: as many as fit the budget, 255 at most.
int pointsFor(int inputs, int outputs) {
    int points = 255;
    const auto nodes = [&] {
        uint64_t count = static_cast<uint64_t>(outputs);
        for (int c = 0; c < inputs && count <= kMaxNodes; ++c)
            count *= static_cast<uint64_t>(points);
        return count;
    };
    while (points > 2 && nodes() > kMaxNodes)
        --points;
    return points;
}

bool isUniform(const TableForm& form) {
    const auto& points = form.grid.points;
    return std::all_of(points.begin(), points.end(), [&](int n) { return n == points[0]; });
}

/// Tables of one length that the tag can hold, and one number of grid points.
bool fitsLut16(const TableForm& form) {
    constexpr size_t kMaxEntries = 4096;
    const auto fits = [](const auto& curves) {
        return curves.empty() || curves.front().size() <= kMaxEntries;
    };
    return isUniform(form) && fits(form.inCurves) && fits(form.outCurves);
}

TableForm tableFor(const ReadyConversion& conversion, LinkPrecision precision) {
    const int inputs = conversion.inputs(), outputs = conversion.outputs();
    const StageList& stages = conversion.samplesToSamples();
    if (precision == LinkPrecision::k8) {
        const bool sized = inputs < static_cast<int>(std::size(kByteGrids));
        return plainTable(stages, inputs, outputs,
                          sized ? kByteGrids[inputs] : pointsFor(inputs, outputs));
    }
    if (conversion.table() && fitsLut16(*conversion.table())) return *conversion.table();
    if (servesTable(inputs, outputs)) return conversion.builtTable();
    return plainTable(stages, inputs, outputs, pointsFor(inputs, outputs));
}

using Profiles = std::vector<std::shared_ptr<const ProfileView>>;

void requireDevice(uint32_t space, const ProfileView& end) {
    if (!isConnectionSpace(space)) return;
    end.fail(icErrInvalid, 0, -1,
             "is where the chain begins or ends in " + spaceName(space) +
                 ", and a device link leads from device to device");
}

void requireDevices(const ReadyConversion& conversion, const Profiles& profiles) {
    requireDevice(conversion.inSpace(), *profiles.front());
    requireDevice(conversion.outSpace(), *profiles.back());
    if (!conversion.hasGrayPrint()) return;
    for (const auto& profile : profiles) {
        const bool entered =
            profile != profiles.front() && isGrayPrint(*profile, Direction::kToDevice);
        const bool left = profile != profiles.back() && isGrayPrint(*profile, Direction::kToPcs);
        if (!entered && !left) continue;
        profile->fail(icErrInvalid, kGrayTag, -1,
                      "is for a gray print device, whose tones follow one channel and can't be "
                      "held by a device link");
    }
}

}  // namespace

std::vector<uint8_t> makeLink(const ConversionRequest& request, LinkPrecision precision) {
    const ReadyConversion conversion(request);
    const Profiles profiles = profilesOf(request);
    requireDevices(conversion, profiles);
    const ProfileView &first = *profiles.front(), &last = *profiles.back();
    const auto nameOf = [](const ProfileView& profile) {
        return profile.description().empty() ? profile.name() : profile.description();
    };
    NewProfile link;
    link.version = kVersion2;
    link.deviceClass = fourcc("link");
    link.space = conversion.inSpace();
    link.pcs = conversion.outSpace();
    link.intent = request.intents.back();
    link.created = utcNow();
    link.tags = {{fourcc("desc"), descriptionTag(asciiText(nameOf(first) + " to " + nameOf(last)))},
                 {fourcc("cprt"), textTag(kFreeCopyright)},
                 {fourcc("wtpt"), whiteTag(last)},
                 {fourcc("pseq"), sequenceTag(request.profiles)},
                 {fourcc("A2B0"), lutTag(tableFor(conversion, precision), precision)}};
    return profileBytes(link);
}

}  // namespace lumoxa::engine
