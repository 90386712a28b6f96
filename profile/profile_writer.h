// SPDX-License-Identifier: Apache-2.0
//
// The layout of a written profile: header, tag table, then every distinct tag's data once. Files
// and memory are written by the same code; a `Sink` has
//   bool write(uint64_t at, const void* bytes, size_t size)
// which leaves zeros where nothing is written.
#pragma once

#include <limits>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/byte_order.h"
#include "profile/header_reader.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {

constexpr uint64_t alignedToFour(uint64_t position) {
    constexpr uint64_t kAlignment = 4;
    return (position + kAlignment - 1) / kAlignment * kAlignment;
}

/// Writes tag data behind the table and notes where it went. Positions are 64 bits wide, so that a
/// profile of over 4 GiB is found and not wrapped around.
template <class Sink>
class TagDataWriter {
  public:
    TagDataWriter(Sink& sink, size_t tagCount)
        : sink_(sink), end_(kTagTableOffset + uint64_t{kTagEntrySize} * tagCount) {}

    /// Where the tag's bytes are: written now, or with an earlier tag of the same bytes.
    bool place(const icTag_safe64bit& tag, uint64_t& offset) {
        const std::string_view bytes(reinterpret_cast<const char*>(tagAddress(tag)), tag.size);
        const auto [known, isNew] = placed_.try_emplace(bytes, alignedToFour(end_));
        offset = known->second;
        if (!isNew) return true;
        end_ = alignedToFour(offset + tag.size);
        return end_ <= std::numeric_limits<uint32_t>::max() &&
               sink_.write(offset, bytes.data(), bytes.size());
    }

    /// End of the last tag, rounded up: the size of the profile.
    uint32_t end() const { return static_cast<uint32_t>(end_); }

  private:
    Sink& sink_;
    uint64_t end_;
    std::unordered_map<std::string_view, uint64_t> placed_;
};

class TagTableBytes {
  public:
    explicit TagTableBytes(size_t tagCount) {
        bytes_.reserve(sizeof(uint32_t) + kTagEntrySize * tagCount);
        append(static_cast<uint32_t>(tagCount));
    }
    void append(uint32_t value) {
        const uint32_t stored = fromFileOrder(value);
        const auto* first = reinterpret_cast<const uint8_t*>(&stored);
        bytes_.insert(bytes_.end(), first, first + sizeof stored);
    }
    const std::vector<uint8_t>& bytes() const { return bytes_; }

  private:
    std::vector<uint8_t> bytes_;
};

/// Writes a profile whose tags are in memory. `header` receives the header as written, in file byte
/// order. False when the sink fails or the profile would have over 4 GiB.
template <class Sink>
bool writeProfile(const icHeader& original, icTagList_safe64bit& list, Sink& sink,
                  icHeader& header) {
    const auto tags = entriesOf(list);
    TagTableBytes table(tags.size());
    TagDataWriter<Sink> data(sink, tags.size());
    for (const icTag_safe64bit& tag : tags) {
        uint64_t offset = 0;
        if (!data.place(tag, offset)) return false;
        table.append(tag.signature);
        table.append(static_cast<uint32_t>(offset));
        table.append(tag.size);
    }
    header = original;
    header.size = data.end();
    swapHeader(header);
    return sink.write(0, &header, sizeof header) &&
           sink.write(sizeof header, table.bytes().data(), table.bytes().size());
}

}  // namespace lumoxa
