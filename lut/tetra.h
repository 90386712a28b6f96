// SPDX-License-Identifier: Apache-2.0
//
// Tetrahedral interpolation of a three-input grid.
//
// A cell is cut into six tetrahedra along the axis of equal coordinates; a pixel costs three
// comparisons and one dot product an output (Sakamoto and Itooka's scheme; see also Kasson et al.,
// "Performing color space conversions with three-dimensional linear interpolation", 1995).
//
// Invariants: the state is immutable; fractions lie in [0, 1] for inputs within the grid.
#pragma once

#include "lut/simplex_clut.h"

namespace lumoxa {

/// The tetrahedron that holds a point. Ties fall to one fixed side, which matters because equal
/// values summed in another order may round differently.
constexpr int tetrahedronOf(float f0, float f1, float f2) {
    const int f0Largest = 5 - (f2 > f1);  // selected without branches, which noise would mispredict
    const int f1Larger = 3 - (f2 > f0);
    const int f2Larger = 1 - (f1 > f0);
    const int f0NotLargest = f1 > f2 ? f1Larger : f2Larger;
    return f0 > (f1 > f2 ? f1 : f2) ? f0Largest : f0NotLargest;
}

/// Corners have bit 2 for input dimension 0, bit 1 for dimension 1, bit 0 for dimension 2.
struct TetraScheme {
    static constexpr int kDimensions = 3;
    static constexpr int kSimplices = 6;
    static constexpr int kCorners[kSimplices][4] = {
        {0, 1, 3, 7},  // f2 >= f1 >= f0
        {0, 1, 5, 7},  // f2 >= f0 >= f1
        {0, 2, 3, 7},  // f1 >= f2 >= f0
        {0, 2, 6, 7},  // f1 >= f0 >= f2
        {0, 4, 5, 7},  // f0 >= f2 >= f1
        {0, 4, 6, 7},  // f0 >= f1 >= f2
    };
    static constexpr int dimensionOf(int coordinate) { return coordinate; }
    static constexpr int bitOf(int coordinate) { return 2 - coordinate; }
    static int select(const Row* f, int i) { return tetrahedronOf(f[0][i], f[1][i], f[2][i]); }
};

using icLutTetraState_t = SimplexState<TetraScheme>;
using TetraClut = SimplexClut<TetraScheme>;

}  // namespace lumoxa
