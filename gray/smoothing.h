// SPDX-License-Identifier: Apache-2.0
//
// Smoothing of a 16-bit table.
#pragma once

#include <cstdint>
#include <span>

namespace lumoxa {

/// Takes ripples out of a table with a kernel of 137 weights. What is smoothed is the difference to
/// the straight line between the table's ends, continued beyond them by odd reflection: the ends
/// and straight lines stay as they are. Results are not clipped. Tables of 68 entries or fewer are
/// left alone. Throws std::bad_alloc.
void smoothTable(std::span<uint16_t> table);

}  // namespace lumoxa
