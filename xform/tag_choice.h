// SPDX-License-Identifier: Apache-2.0
//
// Which LUT tag serves an intent in a direction.
#pragma once

#include <iterator>

#include "lumoxa/types.h"
#include "profile/profile_object.h"

namespace lumoxa {

inline constexpr icTagSignature kGamutTag = fourcc("gamt");

inline constexpr icTagSignature kLutTags[2][3] = {
    {fourcc("A2B0"), fourcc("A2B1"), fourcc("A2B2")},
    {fourcc("B2A0"), fourcc("B2A1"), fourcc("B2A2")},
};

/// The LUT tag that an intent and a direction name, or 0 where there is no such intent or
/// direction. Absolute colorimetry has the relative colorimetric tag, which the media white scales.
inline icTagSignature lutTagOf(uint32_t intent, icTransType direction) {
    constexpr uint32_t kTagOfIntent[] = {0, 1, 2, 1};
    if (intent >= std::size(kTagOfIntent)) return 0;
    switch (direction) {
        case icDeviceToPcs:
            return kLutTags[0][kTagOfIntent[intent]];
        case icPcsToDevice:
            return kLutTags[1][kTagOfIntent[intent]];
        case icGamutTest:
            return kGamutTag;
        default:
            return 0;
    }
}

/// The LUT tag of the profile for `intent` in direction 1 or 2, or 0 when it has none: the one that
/// they name, else the first of 0, 1 and 2 of the same direction; an intent that does not exist
/// uses that order alone.
inline icTagSignature chooseLutTag(const icProfileInternal& profile, uint32_t intent,
                                   icTransType direction) {
    const icTagSignature named = lutTagOf(intent, direction);
    if (named != 0 && hasTag(profile, named)) return named;
    for (const icTagSignature tag : kLutTags[direction == icDeviceToPcs ? 0 : 1]) {
        if (hasTag(profile, tag)) return tag;
    }
    return 0;
}

}  // namespace lumoxa
