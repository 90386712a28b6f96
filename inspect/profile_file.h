// SPDX-License-Identifier: Apache-2.0
//
// A profile's bytes as they are, however broken: header, tag table and tags as far as they are
// there.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/byte_view.h"
#include "profile/header_reader.h"
#include "profile/tag_table.h"

namespace lumoxa::inspection {

inline constexpr uint64_t kHeaderBytes = kHeaderSize;
inline constexpr uint64_t kTagCountAt = kTagCountOffset;
inline constexpr uint64_t kTableAt = kTagTableOffset;
inline constexpr uint64_t kEntryBytes = kTagEntrySize;

/// Positions of header fields.
namespace header_at {
inline constexpr uint64_t kSize = 0, kVersion = 8, kClass = 12, kSpace = 16, kPcs = 20, kDate = 24,
                          kMagicAt = 36, kFlags = 44, kIntent = 64, kIlluminant = 68, kCreator = 80,
                          kProfileId = 84, kReserved = 100;
}  // namespace header_at

/// One row of the tag table.
struct TagEntry {
    uint32_t signature = 0;
    uint32_t offset = 0;
    uint32_t size = 0;
    uint64_t at = 0;  ///< position of the row itself

    uint64_t end() const { return uint64_t{offset} + size; }
};

/// A view of bytes that have to outlive it.
class ProfileFile {
  public:
    explicit ProfileFile(ByteView bytes);

    ByteView bytes() const { return bytes_; }
    bool hasHeader() const { return bytes_.size() >= kHeaderBytes; }
    /// Whether the bytes are a profile at all: by the signature, or by the class where that is
    /// damaged.
    bool isProfile() const;
    uint32_t majorVersion() const { return bytes_.u8(header_at::kVersion); }
    uint32_t deviceClass() const { return bytes_.u32(header_at::kClass); }
    uint32_t space() const { return bytes_.u32(header_at::kSpace); }
    uint32_t pcs() const { return bytes_.u32(header_at::kPcs); }

    /// Tags that the count field promises; rows beyond the end are not in entries().
    uint64_t declaredTags() const { return bytes_.u32(kTagCountAt); }
    const std::vector<TagEntry>& entries() const { return entries_; }

    /// The first tag of that signature, or null.
    const TagEntry* find(uint32_t signature) const;
    /// A tag's bytes as far as the file holds them.
    ByteView data(const TagEntry& entry) const { return bytes_.part(entry.offset, entry.size); }
    uint32_t type(const TagEntry& entry) const { return data(entry).u32(0); }

  private:
    ByteView bytes_;
    std::vector<TagEntry> entries_;
};

}  // namespace lumoxa::inspection
