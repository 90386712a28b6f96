// SPDX-License-Identifier: Apache-2.0
//
// Which LUT tag serves an intent in a direction.
#pragma once

#include "lumoxa/types.h"
#include "profile/profile_object.h"

namespace lumoxa {

inline constexpr icTagSignature kGamutTag = fourcc("gamt");

/// The LUT tag of the profile for `intent` in direction 1 or 2, or 0 when it has none.
///
/// Absolute colorimetry asks for the relative colorimetric tag, which the media white scales. After
/// the tag asked for, 0, 1 and 2 of the same direction are tried in this order; an intent that does
/// not exist uses that order alone.
inline icTagSignature chooseLutTag(const icProfileInternal& profile, uint32_t intent,
                                   icTransType direction) {
    constexpr icTagSignature kTags[2][3] = {
        {fourcc("A2B0"), fourcc("A2B1"), fourcc("A2B2")},
        {fourcc("B2A0"), fourcc("B2A1"), fourcc("B2A2")},
    };
    constexpr uint32_t kAskedFor[] = {0, 1, 2, 1};
    const auto& tags = kTags[direction == icDeviceToPcs ? 0 : 1];
    if (intent < 4 && hasTag(profile, tags[kAskedFor[intent]])) return tags[kAskedFor[intent]];
    for (const icTagSignature tag : tags) {
        if (hasTag(profile, tag)) return tag;
    }
    return 0;
}

}  // namespace lumoxa
