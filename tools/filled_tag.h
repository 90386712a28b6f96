// SPDX-License-Identifier: Apache-2.0
//
// Tags as bytes in file order.
#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <vector>

#include "tools/profile_handle.h"
#include "tools/signatures.h"

namespace lumoxa_tool {

/// What every tag begins with: its type and four zero bytes.
inline std::vector<uint8_t> startOfTag(uint32_t type) {
    std::vector<uint8_t> tag;
    put32(tag, type);
    put32(tag, 0);
    return tag;
}

/// A whole tag that the library fills.
/// @param fill  makes it: takes an `icTagBase**`, returns the size, as the icFill functions do
template <class Fill>
std::vector<uint8_t> filledTag(const Fill& fill) {
    icTagBase* made = nullptr;
    const int size = fill(&made);
    const std::unique_ptr<icTagBase, BlockFree> owner(made);
    if (size <= 0) throw std::bad_alloc();
    const auto* first = reinterpret_cast<const uint8_t*>(made);
    return {first, first + size};
}

}  // namespace lumoxa_tool
