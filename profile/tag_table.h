// SPDX-License-Identifier: Apache-2.0
//
// The tag table: a 32-bit count, then for each tag its signature, offset and size.
#pragma once

#include <cstdio>
#include <limits>
#include <span>

#include "base/c_heap.h"
#include "lumoxa/types.h"

namespace lumoxa {

// Frozen by the file format.
inline constexpr uint32_t kTagCountOffset = 128;
inline constexpr uint32_t kTagTableOffset = 132;
inline constexpr uint32_t kTagEntrySize = 12;

/// Most tags whose table fits a file, since a profile's size is a 32-bit number.
inline constexpr uint32_t kMaxTagCount =
    (std::numeric_limits<uint32_t>::max() - kTagTableOffset) / kTagEntrySize;

/// Length of an image whose length nobody knows: every offset and size in it is trusted.
inline constexpr uint64_t kTrustedLength = std::numeric_limits<uint64_t>::max();

using TagListPtr = CHeapPtr<icTagList_safe64bit>;

/// A zeroed table of `count` entries.
TagListPtr makeTagList(uint32_t count);

/// The entries of a table, all `count` of them.
inline std::span<icTag_safe64bit> entriesOf(icTagList_safe64bit& list) {
    return {static_cast<icTag_safe64bit*>(list.tags), static_cast<size_t>(list.count)};
}

/// The first entry of that signature, or null. A null list and a negative count are empty.
icTag_safe64bit* findTag(icTagList_safe64bit* list, icTagSignature signature);

/// Whether `size` bytes from `offset` lie inside `length` bytes.
constexpr bool fits(uint64_t offset, uint64_t size, uint64_t length) {
    return offset <= length && size <= length - offset;
}

/// Bytes that the tags of a profile may take together, in lengths of the profile. Tags may share
/// data, as the three intents of a printer often do, but each is copied by itself: without a bound,
/// a small file with thousands of entries for one large range would take all memory.
inline constexpr uint64_t kMaxSharing = 64;

/// Whether every tag lies inside `length` bytes and all together keep to the bound.
bool tagsFit(icTagList_safe64bit& list, uint64_t length);

/// Tells how many tags the image of `length` bytes has, after checking that their table fits:
/// icErrRead when not, icErrNoMemory for no tags at all and, in a trusted image, for more than any
/// profile can have.
int readTagCount(const uint8_t* image, uint64_t length, uint32_t& count);

/// The table of an image, `count` being what readTagCount gave.
TagListPtr readTagEntries(const uint8_t* image, uint32_t count);

/// Reads count and table at the stream's position; codes as for the image. Memory grows with the
/// bytes that arrive, never with the count alone.
int readTagTable(FILE* stream, TagListPtr& out);

}  // namespace lumoxa
