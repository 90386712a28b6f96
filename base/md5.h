// SPDX-License-Identifier: Apache-2.0
//
// The MD5 digest (RFC 1321), by which profiles are told apart (ICC.1:2010, 7.2.18). It protects
// against nothing.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace lumoxa {

using Md5Digest = std::array<uint8_t, 16>;

/// A digest of bytes that come in parts.
class Md5 {
  public:
    void add(std::span<const uint8_t> bytes);
    /// The digest of all bytes that were added; the last call.
    Md5Digest finish();

  private:
    static constexpr size_t kBlockBytes = 64;
    void addBlock(const uint8_t* block);

    std::array<uint32_t, 4> state_ = {0x67452301, 0xEFCDAB89, 0x98BADCFE, 0x10325476};
    std::array<uint8_t, kBlockBytes> pending_ = {};
    uint64_t length_ = 0;  // in bytes
};

}  // namespace lumoxa
