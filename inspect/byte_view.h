// SPDX-License-Identifier: Apache-2.0
//
// Bytes of unknown origin, read without ever leaving them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumoxa::inspection {

/// A run of big-endian bytes that somebody else owns. What lies beyond its end reads as 0.
class ByteView {
  public:
    ByteView() = default;
    ByteView(const uint8_t* first, size_t size) : first_(first), size_(size) {}
    explicit ByteView(const std::vector<uint8_t>& bytes) : ByteView(bytes.data(), bytes.size()) {}

    const uint8_t* begin() const { return first_; }
    const uint8_t* end() const { return first_ + size_; }
    uint64_t size() const { return size_; }
    bool holds(uint64_t at, uint64_t count) const { return at <= size_ && count <= size_ - at; }

    uint32_t u8(uint64_t at) const { return at < size_ ? first_[at] : 0; }
    uint32_t u16(uint64_t at) const { return u8(at) << 8 | u8(at + 1); }
    uint32_t u32(uint64_t at) const { return u16(at) << 16 | u16(at + 2); }
    /// An s15Fixed16 number.
    double fixed(uint64_t at) const { return static_cast<int32_t>(u32(at)) / 65536.0; }

    /// `count` bytes from `at`, or fewer where the view ends.
    ByteView part(uint64_t at, uint64_t count) const {
        if (at >= size_) return {};
        return {first_ + at, static_cast<size_t>(std::min<uint64_t>(count, size_ - at))};
    }

  private:
    const uint8_t* first_ = nullptr;
    size_t size_ = 0;
};

}  // namespace lumoxa::inspection
