// SPDX-License-Identifier: Apache-2.0
//
// Linear interpolation in a table of equally spaced entries, in single precision: the one
// definition that curves, grids and output tables share.
#pragma once

#include <algorithm>
#include <cstdint>

#include "base/pcs_encoding.h"
#include "lut/row_kernels.h"

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

/// lookUp() of every value of a row in place. Positions and results are worked out for several
/// values at once; only the table itself is read one by one.
template <class Entry>
void lookUpRow(const Entry* table, int32_t lastSegment, float* row, int count) {
    constexpr int kStrip = 16;
    int done = 0;
    for (; done + kStrip <= count; done += kStrip) {
        float* x = row + done;
        int32_t segment[kStrip];
        float low[kStrip];
        float high[kStrip];
        for (int i = 0; i < kStrip; ++i)
            segment[i] = segmentOf(x[i], lastSegment);
        for (int i = 0; i < kStrip; ++i) {
            low[i] = static_cast<float>(table[segment[i]]);
            high[i] = static_cast<float>(table[segment[i] + 1]);
        }
        for (int i = 0; i < kStrip; ++i) {
            x[i] = low[i] + (high[i] - low[i]) * (x[i] - static_cast<float>(segment[i]));
        }
    }
    for (; done < count; ++done)
        row[done] = lookUp(table, lastSegment, row[done]);
}
inline void lookUpRow(const uint16_t* table, int32_t lastSegment, float* row, int count) {
    rowKernels().lookUp(table, lastSegment, row, count);
}

}  // namespace lumoxa
