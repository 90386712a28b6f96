// SPDX-License-Identifier: Apache-2.0
#include "profile/tag_table.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "lumoxa/profile.h"

namespace lumoxa {
namespace {

// Checks a count against the bytes that follow it. A profile without tags can't be loaded: its
// table counts as too large for memory, because the entries beyond the first are 2^32 - 1 as a
// 32-bit number. icProfileCreate makes a profile that tags can be added to.
int checkTagCount(uint32_t count, uint64_t bytesAfterCount, int tooMany) {
    if (count == 0) return icErrNoMemory;
    if (count > kMaxTagCount) return tooMany;
    return fits(0, uint64_t{count} * kTagEntrySize, bytesAfterCount) ? icSuccess : icErrRead;
}

TagListPtr convertedEntries(const uint8_t* at, uint32_t count) {
    TagListPtr list = makeTagList(count);
    for (icTag_safe64bit& entry : entriesOf(*list)) {
        entry.signature = loadFileOrder<uint32_t>(at);
        entry.location = loadFileOrder<uint32_t>(at + 4);
        entry.size = loadFileOrder<uint32_t>(at + 8);
        at += kTagEntrySize;
    }
    return list;
}

}  // namespace

TagListPtr makeTagList(uint32_t count) {
    const size_t bytes =
        offsetof(icTagList_safe64bit, tags) + sizeof(icTag_safe64bit) * size_t{count};
    TagListPtr list =
        requireZeroed<icTagList_safe64bit>(std::max(bytes, sizeof(icTagList_safe64bit)));
    list->count = static_cast<int32_t>(count);
    return list;
}

icTag_safe64bit* findTag(icTagList_safe64bit* list, icTagSignature signature) {
    if (list == nullptr || list->count < 1) return nullptr;
    const auto entries = entriesOf(*list);
    const auto found = std::find_if(entries.begin(), entries.end(), [signature](const auto& entry) {
        return entry.signature == signature;
    });
    return found == entries.end() ? nullptr : &*found;
}

bool tagsFit(icTagList_safe64bit& list, uint64_t length) {
    uint64_t total = 0;  // below 2^32 entries of below 2^32 bytes
    for (const icTag_safe64bit& entry : entriesOf(list)) {
        // Nothing is read of an empty tag, and writers put one behind the end.
        if (entry.size != 0 && !fits(entry.location, entry.size, length)) return false;
        total += entry.size;
    }
    return total / kMaxSharing <= length;
}

int readTagCount(const uint8_t* image, uint64_t length, uint32_t& count) {
    if (length < kTagTableOffset) return icErrRead;
    count = loadFileOrder<uint32_t>(image + kTagCountOffset);
    return checkTagCount(count, length - kTagTableOffset,
                         length == kTrustedLength ? icErrNoMemory : icErrRead);
}

TagListPtr readTagEntries(const uint8_t* image, uint32_t count) {
    return convertedEntries(image + kTagTableOffset, count);
}

int readTagTable(FILE* stream, TagListPtr& out) {
    uint32_t count = 0;
    if (std::fread(&count, sizeof count, 1, stream) != 1) return icErrRead;
    count = fromFileOrder(count);
    const int code = checkTagCount(count, kTrustedLength, icErrRead);
    if (code != icSuccess) return code;

    constexpr size_t kChunkEntries = 1024;  // more than real profiles have: one read for them
    std::vector<uint8_t> raw;
    for (size_t left = count; left > 0;) {
        const size_t entries = std::min(left, kChunkEntries);
        const size_t old = raw.size();
        raw.resize(old + entries * kTagEntrySize);
        if (std::fread(raw.data() + old, kTagEntrySize, entries, stream) != entries) {
            return icErrRead;
        }
        left -= entries;
    }
    out = convertedEntries(raw.data(), count);
    return icSuccess;
}

}  // namespace lumoxa

using namespace lumoxa;

int icReadTagTable(const void* image, icTagList_safe64bit** out) {
    if (image == nullptr) return icErrNullData;
    if (out == nullptr) return icErrInvalid;
    return guarded([&] {
        const auto* bytes = static_cast<const uint8_t*>(image);
        uint32_t count = 0;
        const int code = readTagCount(bytes, kTrustedLength, count);
        if (code != icSuccess) return code;
        *out = nullptr;
        *out = readTagEntries(bytes, count).release();
        return icSuccess;
    });
}

int icReadTagTable(FILE* stream, icTagList_safe64bit** out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    if (stream == nullptr) return icErrInvalid;
    return guarded([&] {
        TagListPtr list;
        const int code = readTagTable(stream, list);
        *out = list.release();
        return code;
    });
}

int icGetTagPtr(icTagList_safe64bit* list, icTagSignature signature, icTag_safe64bit** out) {
    if (out == nullptr) return icErrInvalid;
    *out = findTag(list, signature);
    return *out != nullptr ? icSuccess : icErrNoTag;
}
