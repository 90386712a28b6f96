// SPDX-License-Identifier: Apache-2.0
//
// Copies of tag data, from memory and from files.
#pragma once

#include <cstdio>

#include "base/c_heap.h"
#include "lumoxa/types.h"

namespace lumoxa {

/// Reads `size` bytes at `offset` of a seekable stream into a zeroed block of at least
/// `blockSize` bytes. icErrRead, with nothing allocated, when the file is too short for them.
int readFileBytes(FILE* stream, int64_t offset, uint32_t size, size_t blockSize,
                  CHeapPtr<uint8_t>& out);

/// The copy that callers get of a tag held in memory: type signature in host order, body as in the
/// file, padded with zeros to the size of an icTagBase.
CHeapPtr<icTagBase> copyTag(const void* bytes, uint32_t size);

/// As copyTag, for a tag in a file. Codes as readFileBytes.
int readFileTag(FILE* stream, const icTag_safe64bit& entry, CHeapPtr<icTagBase>& out);

/// The address in an entry whose tag is held in memory.
inline uint8_t* tagAddress(const icTag_safe64bit& entry) {
    return reinterpret_cast<uint8_t*>(static_cast<uintptr_t>(entry.location));
}

inline uint64_t tagLocation(const void* address) {
    return reinterpret_cast<uintptr_t>(address);
}

}  // namespace lumoxa
