// SPDX-License-Identifier: Apache-2.0
//
// What the accurate engine takes from callers and hands out to them: profile handles, and blocks
// that they release.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "base/c_heap.h"
#include "lumoxa/lmx.h"
#include "profile/profile_object.h"

namespace lumoxa {

/// A copy on the C heap, which the caller releases.
template <class T>
T* handedOut(const void* bytes, size_t size) {
    CHeapPtr<T> block = requireZeroed<T>(size);
    if (size != 0) std::memcpy(block.get(), bytes, size);
    return block.release();
}

inline char* handedOut(const std::string& text) {
    return handedOut<char>(text.c_str(), text.size() + 1);
}

/// The handle of a profile that keeps its bytes. @throws FaultError for bytes that hold none
lmx_profile* profileOf(std::vector<uint8_t> bytes);

/// @throws FaultError for a handle that is null or that of no profile
const icProfileInternal& requireProfile(lmx_profile* profile);

}  // namespace lumoxa
