// SPDX-License-Identifier: Apache-2.0
//
// Owners of C-heap blocks. Whatever a caller will release comes from the C heap; inside the
// library such a block is always held by one of these until it is handed out.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>
#include <new>

namespace lumoxa {

struct FreeDeleter {
    void operator()(void* block) const noexcept { std::free(block); }
};

template <class T>
using CHeapPtr = std::unique_ptr<T, FreeDeleter>;

/// `bytes` zeroed bytes of the C heap viewed as a T, or null. Asks for at least one byte, so that
/// null always means a failed allocation.
template <class T>
CHeapPtr<T> allocateZeroed(size_t bytes) {
    return CHeapPtr<T>(static_cast<T*>(std::calloc(bytes == 0 ? 1 : bytes, 1)));
}

/// As allocateZeroed, for code that runs below guarded(): a failed allocation is std::bad_alloc.
template <class T>
CHeapPtr<T> requireZeroed(size_t bytes) {
    CHeapPtr<T> block = allocateZeroed<T>(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace lumoxa
