// SPDX-License-Identifier: Apache-2.0
//
// Linear interpolation in a table of equally spaced entries, in single precision: the one
// definition that curves, grids and output tables share.
#pragma once

#include <algorithm>
#include <cstdint>

#include "profile/pcs_encoding.h"

namespace lumoxa {

/// Index of the segment that holds position `x`: its integer part, kept to 0 .. last. Positions
/// beyond either end (and what is not a number) belong to the end segments, which extend linearly.
inline int32_t segmentOf(float x, int32_t last) {
    constexpr float kLargestBelow2Pow31 = 2147483520.0f;
    return std::min(static_cast<int32_t>(clipped(x, kLargestBelow2Pow31)), last);
}

/// The table's value at position `x`; `lastSegment` is its number of entries less 2.
template <class Entry>
float lookUp(const Entry* table, int32_t lastSegment, float x) {
    const int32_t i = segmentOf(x, lastSegment);
    const float low = static_cast<float>(table[i]);
    const float high = static_cast<float>(table[i + 1]);
    return low + (high - low) * (x - static_cast<float>(i));
}

}  // namespace lumoxa
