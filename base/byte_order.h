// SPDX-License-Identifier: Apache-2.0
//
// ICC data is big-endian; the library runs on little-endian hosts. Fields inside a tag may stand at
// any address, so every access goes through a byte copy, which compilers turn into one load or
// store.
#pragma once

#include <cstdint>
#include <cstring>

namespace lumoxa {

/// Whether the host stores the most significant byte first. Constant: the library is built for
/// little-endian hosts, and every reader and writer swaps exactly when this is false.
inline constexpr bool hostIsBigEndian = false;

constexpr uint16_t swapped(uint16_t v) {
    return static_cast<uint16_t>(v << 8 | v >> 8);
}

constexpr uint32_t swapped(uint32_t v) {
    return v << 24 | (v & 0xFF00U) << 8 | (v >> 8 & 0xFF00U) | v >> 24;
}

constexpr uint64_t swapped(uint64_t v) {
    return uint64_t{swapped(static_cast<uint32_t>(v))} << 32 |
           swapped(static_cast<uint32_t>(v >> 32));
}

/// The T stored at `at`, in whatever byte order it has there.
template <class T>
T loadRaw(const void* at) {
    T v;
    std::memcpy(&v, at, sizeof v);
    return v;
}

template <class T>
void storeRaw(void* at, T v) {
    std::memcpy(at, &v, sizeof v);
}

template <class T>
T fromFileOrder(T v) {
    if constexpr (hostIsBigEndian)
        return v;
    else
        return swapped(v);
}

/// The unsigned T stored at `at` in file byte order.
template <class T>
T loadFileOrder(const void* at) {
    return fromFileOrder(loadRaw<T>(at));
}

/// Reverses the bytes of each of `n` consecutive T, whatever the host.
template <class T>
void reverseInPlace(void* at, size_t n) {
    auto* p = static_cast<uint8_t*>(at);
    for (size_t i = 0; i < n; ++i, p += sizeof(T)) {
        storeRaw(p, swapped(loadRaw<T>(p)));
    }
}

/// Converts `n` consecutive T in place between file and host order, in either direction.
template <class T>
void swapInPlace(void* at, size_t n) {
    if constexpr (!hostIsBigEndian) reverseInPlace<T>(at, n);
}

}  // namespace lumoxa
