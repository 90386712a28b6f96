// SPDX-License-Identifier: Apache-2.0
//
// The loops over a row: elementary.h for each element, in double, and one rounding to float.
#include "base/row_math.h"

#include <algorithm>

#include "base/elementary.h"

namespace lumoxa {

void cubeRoots(float* row, int count) {
    for (int i = 0; i < count; ++i)
        row[i] = elementary::cubeRoot(row[i]);
}

void powers(float* row, int count, float exponent) {
    // Beyond the limit, what is not 1 becomes 0 or the largest float anyway.
    constexpr float kMostExponent = 0x1p40f;
    const auto y = static_cast<double>(std::min(elementary::positive(exponent), kMostExponent));
    for (int i = 0; i < count; ++i)
        row[i] = elementary::power(row[i], y);
}

float cubeRoot(float x) {
    cubeRoots(&x, 1);
    return x;
}

float fastPower(float x, float exponent) {
    powers(&x, 1, exponent);
    return x;
}

}  // namespace lumoxa
