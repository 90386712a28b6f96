// SPDX-License-Identifier: Apache-2.0
//
// The profile ID (ICC.1:2010, 7.2.18): the MD5 digest of the profile with flags, rendering intent
// and the ID itself zeroed.
#pragma once

#include <optional>

#include "base/md5.h"
#include "inspect/profile_file.h"

namespace lumoxa::inspection {

/// The ID in the header; nothing where it is zero, which says that none was computed, and where
/// the file is shorter than a header.
std::optional<Md5Digest> storedProfileId(const ProfileFile& file);

/// What the ID should be.
Md5Digest computedProfileId(const ProfileFile& file);

}  // namespace lumoxa::inspection
