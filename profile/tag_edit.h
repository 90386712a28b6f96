// SPDX-License-Identifier: Apache-2.0
//
// Putting tag data into a profile that is held in memory.
#pragma once

#include "base/c_heap.h"
#include "lumoxa/types.h"
#include "profile/profile_object.h"

namespace lumoxa {

/// The record of a profile that can be edited, or null: its tags must be in memory, and its header
/// must not be in file byte order after a save.
icProfileInternal* editableProfile(icProfile_t profile);

/// Bytes that an entry of the tag table adds to the size field while a profile is edited.
inline constexpr uint32_t kEntryGrowth = 12;

/// Makes `bytes`, in file byte order, the data of the first tag of that signature, or of a new one
/// at the end of the table, for which the size field grows by `entryGrowth`. Throws std::bad_alloc
/// with the profile as it was.
void storeTag(icProfileInternal& profile, icTagSignature signature, CHeapPtr<uint8_t> bytes,
              uint32_t size, uint32_t entryGrowth = kEntryGrowth);

}  // namespace lumoxa
