// SPDX-License-Identifier: Apache-2.0
//
// Writing a profile: header, tag table, then every distinct tag's data once.
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "lumoxa/tags.h"
#include "profile/byte_order.h"
#include "profile/entry_guard.h"
#include "profile/header_reader.h"
#include "profile/stream_position.h"
#include "profile/tag_edit.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

constexpr uint64_t roundedUp(uint64_t position) {
    constexpr uint64_t kAlignment = 4;
    return (position + kAlignment - 1) / kAlignment * kAlignment;
}

bool writeAll(FILE* stream, const void* bytes, size_t size) {
    return std::fwrite(bytes, 1, size, stream) == size;
}

/// A file being written; whatever fails, its owner learns when it closes the file.
class OutputStream {
  public:
    explicit OutputStream(const char* path) : stream_(std::fopen(path, "wb")) {}
    ~OutputStream() {
        if (stream_ != nullptr) std::fclose(stream_);
    }
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    FILE* get() const { return stream_; }

    /// False when what was buffered could not be written: a full disk may show only here. Flushed
    /// by itself, since not every C runtime's fclose tells that its last write failed.
    bool close() {
        const bool flushed = std::fflush(stream_) == 0;
        return std::fclose(std::exchange(stream_, nullptr)) == 0 && flushed;
    }

  private:
    FILE* stream_;
};

/// Writes tag data behind the table and notes where it went. Positions are 64 bits wide, so that a
/// profile of over 4 GiB is found and not wrapped around.
class TagDataWriter {
  public:
    TagDataWriter(FILE* stream, size_t tagCount)
        : stream_(stream), end_(kTagTableOffset + uint64_t{kTagEntrySize} * tagCount) {}

    /// Where the tag's bytes are: written now, or with an earlier tag of the same bytes.
    bool place(const icTag_safe64bit& tag, uint64_t& offset) {
        const std::string_view bytes(reinterpret_cast<const char*>(tagAddress(tag)), tag.size);
        const auto [known, isNew] = placed_.try_emplace(bytes, roundedUp(end_));
        offset = known->second;
        if (!isNew) return true;
        end_ = roundedUp(offset + tag.size);
        return end_ <= std::numeric_limits<uint32_t>::max() &&
               seekFromStart(stream_, static_cast<int64_t>(offset)) &&
               writeAll(stream_, bytes.data(), bytes.size());
    }

    /// End of the last tag, rounded up: the size of the profile.
    uint32_t end() const { return static_cast<uint32_t>(end_); }

  private:
    FILE* stream_;
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

int save(icProfileInternal& profile, const char* path) {
    OutputStream file(path);
    if (file.get() == nullptr) return icErrWrite;
    const auto tags = entriesOf(*profile.tagList);
    TagTableBytes table(tags.size());
    TagDataWriter data(file.get(), tags.size());
    for (const icTag_safe64bit& tag : tags) {
        uint64_t offset = 0;
        if (!data.place(tag, offset)) return icErrWrite;
        table.append(tag.signature);
        table.append(static_cast<uint32_t>(offset));
        table.append(tag.size);
    }
    icHeader header = profile.header;
    header.size = data.end();
    swapHeader(header);
    const bool written = seekFromStart(file.get(), 0) &&
                         writeAll(file.get(), &header, sizeof header) &&
                         writeAll(file.get(), table.bytes().data(), table.bytes().size());
    if (!file.close() || !written) return icErrWrite;
    // The handle keeps the header as it was written, in file byte order, and so is no profile any
    // more. Deliberate: callers are told to save a copy.
    profile.header = header;
    return icSuccess;
}

}  // namespace
}  // namespace lumoxa

int icProfileSaveProfile(icProfile_t handle, const char* path) {
    icProfileInternal* profile = lumoxa::editableProfile(handle);
    if (profile == nullptr || path == nullptr) return icErrInvalid;
    return lumoxa::guarded([&] { return lumoxa::save(*profile, path); });
}
