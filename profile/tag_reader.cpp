// SPDX-License-Identifier: Apache-2.0
#include "profile/tag_reader.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "lumoxa/profile.h"
#include "profile/stream_position.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

// A tag may be too short for its own type signature; the block never is.
size_t tagBlockSize(uint32_t size) {
    return std::max<size_t>(size, sizeof(icTagBase));
}

CHeapPtr<icTagBase> withHostType(CHeapPtr<uint8_t> bytes) {
    swapInPlace<uint32_t>(bytes.get(), 1);
    return CHeapPtr<icTagBase>(reinterpret_cast<icTagBase*>(bytes.release()));
}

// Shared frame of the readers that copy from memory.
int handOutCopy(const void* base, uint64_t offset, uint32_t size, icTagBase** out) {
    return guarded([&] {
        if (base == nullptr) return icErrNullData;
        *out = copyTag(static_cast<const uint8_t*>(base) + offset, size).release();
        return icSuccess;
    });
}

}  // namespace

int readFileBytes(FILE* stream, int64_t offset, uint32_t size, size_t blockSize,
                  CHeapPtr<uint8_t>& out) {
    if (size == 0 && offset >= 0) {  // an empty tag may lie behind the end
        out = requireZeroed<uint8_t>(blockSize);
        return icSuccess;
    }
    const auto length = streamLength(stream);
    if (offset < 0 || !length || !fits(static_cast<uint64_t>(offset), size, *length)) {
        return icErrRead;
    }
    auto bytes = requireZeroed<uint8_t>(blockSize);
    if (!seekFromStart(stream, offset)) return icErrRead;
    if (std::fread(bytes.get(), 1, size, stream) != size) return icErrRead;
    out = std::move(bytes);
    return icSuccess;
}

CHeapPtr<icTagBase> copyTag(const void* bytes, uint32_t size) {
    auto copy = requireZeroed<uint8_t>(tagBlockSize(size));
    std::memcpy(copy.get(), bytes, size);
    return withHostType(std::move(copy));
}

int readFileTag(FILE* stream, const icTag_safe64bit& entry, CHeapPtr<icTagBase>& out) {
    // Offsets are signed 32-bit numbers here, on every platform: a tag at 2 GiB or beyond can't be
    // read from a file-backed profile.
    const auto offset = static_cast<int32_t>(static_cast<uint32_t>(entry.location));
    CHeapPtr<uint8_t> bytes;
    const int code = readFileBytes(stream, offset, entry.size, tagBlockSize(entry.size), bytes);
    if (code != icSuccess) return code;
    out = withHostType(std::move(bytes));
    return icSuccess;
}

}  // namespace lumoxa

using namespace lumoxa;

int icReadTag(const void*, const icTag_safe64bit* entry, icTagBase** out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    if (entry == nullptr) return icErrInvalid;
    return handOutCopy(tagAddress(*entry), 0, entry->size, out);
}

int icReadTagRaw(const void* image, const icTag_safe64bit* entry, icTagBase** out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    if (entry == nullptr) return icErrInvalid;
    return handOutCopy(image, entry->location, entry->size, out);
}

int icReadTag(FILE* stream, const icTag_safe64bit* entry, icTagBase** out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    if (stream == nullptr || entry == nullptr) return icErrInvalid;
    return guarded([&] {
        CHeapPtr<icTagBase> tag;
        const int code = readFileTag(stream, *entry, tag);
        *out = tag.release();
        return code;
    });
}
