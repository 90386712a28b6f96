// SPDX-License-Identifier: Apache-2.0
//
// The private gray tag 'wzgd': XYZ of patches of a three-channel device (docs/gray.md).
#pragma once

#include "gray/gray_state.h"
#include "profile/profile_object.h"

namespace lumoxa {

inline constexpr icTagSignature kGrayTag = fourcc("wzgd");

/// Reads the tag of a profile, checks it, and puts it with its samples into `state`. icErrRead when
/// it is shorter than it declares; icErrTagType when it declares what no device has: N below 2, no
/// steps, an unknown layout, a paper that reflects nothing. Throws std::bad_alloc.
int readGrayTag(const icProfileInternal& profile, GrayConv_t& state);

}  // namespace lumoxa
