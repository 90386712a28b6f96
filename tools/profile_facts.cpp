// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_facts.h"

#include <algorithm>
#include <iterator>
#include <set>

#include "tools/icc_rules.h"
#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

constexpr size_t kMostTags = 1000;  // listed; real profiles have some dozen
constexpr uint64_t kXyzBytes = 20;

LocalizedTexts textsOf(const ProfileFile& file, uint32_t signature) {
    const TagEntry* entry = file.find(signature);
    return entry == nullptr ? LocalizedTexts() : tagTexts(file.data(*entry));
}

std::string titleOf(const ProfileFile& file, const std::string& name) {
    const TagEntry* entry = file.find(kProfileDescriptionTag);
    const std::string text = entry == nullptr ? std::string() : tagText(file.data(*entry));
    return text.empty() ? name : text;
}

std::optional<Xyz> pointOf(const ProfileFile& file, uint32_t signature) {
    const TagEntry* entry = file.find(signature);
    if (entry == nullptr) return std::nullopt;
    const ByteView data = file.data(*entry);
    if (data.u32(0) != kXyz || data.size() < kXyzBytes) return std::nullopt;
    return Xyz{data.fixed(8), data.fixed(12), data.fixed(16)};
}

std::vector<CurveFact> curvesOf(const ProfileFile& file) {
    std::vector<CurveFact> curves;
    ByteView previous;
    for (const uint32_t tag : {fourCc("rTRC"), fourCc("gTRC"), fourCc("bTRC"), fourCc("kTRC")}) {
        const TagEntry* entry = file.find(tag);
        if (entry == nullptr) continue;
        const ByteView data = file.data(*entry);
        const bool same = !curves.empty() &&
                          std::equal(data.begin(), data.end(), previous.begin(), previous.end());
        if (same) {
            curves.back().tags.push_back(tag);
        } else {
            curves.push_back({{tag}, curveForm(data)});
        }
        previous = data;
    }
    return curves;
}

bool isLutTag(uint32_t signature) {
    constexpr uint32_t kFamily = 0xFFFFFF00;
    const uint32_t family = signature & kFamily;
    return family == (fourCc("A2B0") & kFamily) || family == (fourCc("B2A0") & kFamily) ||
           signature == fourCc("gamt");
}

std::vector<LutFact> lutsOf(const ProfileFile& file) {
    std::vector<LutFact> luts;
    std::set<uint32_t> seen;  // of several tags of one signature, the first counts
    for (const TagEntry& entry : file.entries()) {
        if (isLutTag(entry.signature) && seen.insert(entry.signature).second)
            luts.push_back({entry.signature, lutShape(file.data(entry))});
    }
    return luts;
}

std::optional<GrayDeviceFact> grayDeviceOf(const ProfileFile& file) {
    constexpr uint64_t kPatchesAt = 12;
    const TagEntry* entry = file.find(kGrayTag);
    if (entry == nullptr || file.space() != kGray) return std::nullopt;
    const ByteView data = file.data(*entry);
    if (data.size() < kPatchesAt) return std::nullopt;
    return GrayDeviceFact{data.u16(8), data.u8(10), data.u8(11)};
}

void gatherTags(const ProfileFile& file, ProfileFacts& facts) {
    const size_t listed = std::min(file.entries().size(), kMostTags);
    for (size_t i = 0; i < listed; ++i)
        facts.tags.push_back({file.entries()[i], file.type(file.entries()[i])});
    facts.moreTags = file.entries().size() - listed;
}

}  // namespace

std::string GrayDeviceFact::text() const {
    constexpr uint32_t kRamp = 2;
    const std::string counts = layout == kRamp ? "ramp of " + std::to_string(points) + " patches"
                                               : "grids of " + std::to_string(points) + "x" +
                                                     std::to_string(points) + " companions";
    return counts + ", " + std::to_string(steps) + " steps, layout " + std::to_string(layout);
}

ProfileFacts gatherFacts(const std::string& name, const std::vector<uint8_t>& bytes) {
    const ProfileFile file{ByteView(bytes)};
    ProfileFacts facts;
    facts.name = name;
    facts.fileSize = bytes.size();
    facts.title = titleOf(file, name);
    facts.description = textsOf(file, kProfileDescriptionTag);
    facts.copyright = textsOf(file, kCopyrightTag);
    if (file.isProfile()) facts.header = headerFacts(file);
    facts.mediaWhite = pointOf(file, fourCc("wtpt"));
    facts.mediaBlack = pointOf(file, fourCc("bkpt"));
    facts.curves = curvesOf(file);
    facts.luts = lutsOf(file);
    facts.grayDevice = grayDeviceOf(file);
    gatherTags(file, facts);
    gatherTransforms(name, bytes, facts);
    const ViolationList list = findViolations(file);
    facts.violations = list.violations();
    facts.moreViolations = list.more();
    return facts;
}

}  // namespace lumoxa_tool
