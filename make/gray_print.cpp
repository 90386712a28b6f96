// SPDX-License-Identifier: Apache-2.0
#include "make/gray_print.h"

#include <algorithm>
#include <cmath>

#include "base/fault.h"
#include "gray/gray_state.h"
#include "lumoxa/profile.h"
#include "make/curve_tag.h"
#include "make/gray_fit.h"
#include "make/text_tag.h"
#include "profile/new_profile.h"

namespace lumoxa::engine {
namespace {

// The primary platform, as icProfileCreate states it.
constexpr uint32_t kPlatform = fourcc("MSFT");

FixedXyz fixedXyz(const std::array<double, 3>& xyz) {
    return {toFixed16(xyz[0]), toFixed16(xyz[1]), toFixed16(xyz[2])};
}

TagBytes patchesTag(const GrayTable& table) {
    TagBytes tag = startOfTag(kGrayTag);
    put16(tag, table.points);
    tag.push_back(static_cast<uint8_t>(table.steps));
    tag.push_back(static_cast<uint8_t>(table.layout));
    for (const std::array<double, 3>& xyz : table.xyz)
        putFixed(tag, fixedXyz(xyz));
    return tag;
}

// L* over the main channel of a neutral print. A gray curve gives the connection space's achromatic
// number, which is L* where that space is Lab: luminance would be read as far too dark.
TagBytes lightnessTag(const std::vector<uint8_t>& profile) {
    constexpr size_t kEntries = 256;
    constexpr double kFull = 65535, kWhite = 100;
    std::vector<double> device(kEntries);
    for (size_t i = 0; i < kEntries; ++i)
        device[i] = kFull * static_cast<double>(i) / (kEntries - 1);
    icProfile_t handle = nullptr;
    if (icProfileLoadFromBuffer(nullptr, profile.data(), profile.size(), &handle) != icSuccess)
        throw std::bad_alloc();  // the bytes are sound: they were made here
    const ProfilePtr owner(const_cast<icProfileInternal*>(handle));
    std::vector<uint16_t> entries;
    for (const LabTone& lab : tonesOfDevice(handle, device))
        entries.push_back(
            static_cast<uint16_t>(std::floor(kFull * std::min(lab[0] / kWhite, 1.0) + 0.5)));
    return entriesTag(entries);
}

}  // namespace

std::vector<uint8_t> makeGrayPrint(const GrayPrintForm& print) {
    const GrayTable table = sortedPatches(print.patches, print.range);
    NewProfile profile;
    profile.version = kVersion2;
    profile.deviceClass = kClassPrinter;
    profile.space = kSpaceGray;
    profile.pcs = kSpaceLab;
    profile.platform = kPlatform;
    profile.created = utcNow();
    profile.tags = {
        {fourcc("desc"), textTagFor(fourcc("desc"), print.description, kVersion2)},
        {fourcc("cprt"), textTagFor(fourcc("cprt"), print.copyright, kVersion2)},
        {fourcc("wtpt"), xyzTag(fixedXyz(table.paper))},
        {kGrayTag, patchesTag(table)},
    };
    profile.tags.push_back({fourcc("kTRC"), lightnessTag(profileBytes(profile))});
    return profileBytes(profile);
}

}  // namespace lumoxa::engine
