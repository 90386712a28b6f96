// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_profile.h"

#include <algorithm>
#include <cmath>

#include "lumoxa/lumoxa.h"
#include "tools/filled_tag.h"
#include "tools/gray_fit.h"
#include "tools/text_tag.h"
#include "tools/xform_handle.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kVersion2 = 0x02400000;
constexpr double kFixedOne = 65536.0;

Bytes patchesTag(const GrayTable& table) {
    Bytes tag = startOfTag(kGrayTag);
    put16(tag, table.points);
    tag.push_back(static_cast<uint8_t>(table.steps));
    tag.push_back(static_cast<uint8_t>(table.layout));
    for (const std::array<double, 3>& xyz : table.xyz) {
        for (const double value : xyz)
            put32(tag, static_cast<uint32_t>(std::lround(value * kFixedOne)));
    }
    return tag;
}

Bytes whiteTag(const std::array<double, 3>& paper) {
    const auto part = [&](size_t i) { return static_cast<float>(paper[i]); };
    return filledTag(
        [&](icTagBase** tag) { return icFillWhitePoint(part(0), part(1), part(2), tag); });
}

// L* over the main channel of a neutral print. A gray curve gives the connection space's achromatic
// number, which is L* where that space is Lab: luminance would be read as far too dark.
Bytes lightnessTag(icProfile_t profile) {
    constexpr size_t kEntries = 256;
    constexpr double kFull = 65535, kWhite = 100;
    std::vector<double> device(kEntries);
    for (size_t i = 0; i < kEntries; ++i)
        device[i] = kFull * static_cast<double>(i) / (kEntries - 1);
    std::vector<unsigned short> entries;
    for (const Lab& lab : tonesOfDevice(profile, device))
        entries.push_back(
            static_cast<unsigned short>(std::lround(kFull * std::min(lab[0] / kWhite, 1.0))));
    return filledTag([&](icTagBase** tag) {
        return icFillTrc(entries.data(), static_cast<int>(entries.size()), tag);
    });
}

}  // namespace

ProfileHandle makeGrayProfile(const GrayTable& table, const std::string& description,
                              const std::string& copyright) {
    ProfileHandle profile = newProfile(fourCc("prtr"), kGray, kLab, icPerceptual);
    icTagRemove(profile.get(), fourCc("cprt"));  // the library's own
    addTag(profile, fourCc("desc"), descriptionTag(description, kVersion2));
    addTag(profile, fourCc("cprt"), copyrightTag(copyright, kVersion2));
    addTag(profile, fourCc("wtpt"), whiteTag(table.paper));
    addTag(profile, kGrayTag, patchesTag(table));
    addTag(profile, fourCc("kTRC"), lightnessTag(profile.get()));
    return profile;
}

}  // namespace lumoxa_tool
