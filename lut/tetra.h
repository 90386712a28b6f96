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

#include "lut/lut_stages.h"
#include "lut/simplex_table.h"

namespace lumoxa {

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
    static constexpr int bitOfCoordinate(int dimension) { return 2 - dimension; }
};

/// The tetrahedron that holds a point. Ties fall to one fixed side, which matters because equal
/// values summed in another order may round differently.
constexpr int tetrahedronOf(float f0, float f1, float f2) {
    const int f0Largest = 5 - (f2 > f1);  // selected without branches, which noise would mispredict
    const int f1Larger = 3 - (f2 > f0);
    const int f2Larger = 1 - (f1 > f0);
    const int f0NotLargest = f1 > f2 ? f1Larger : f2Larger;
    return f0 > (f1 > f2 ? f1 : f2) ? f0Largest : f0NotLargest;
}

/// A LUT state with the coefficients of its grid: [cell][output][tetrahedron 0..5][c0..c3].
struct icLutTetraState_t : icLutState_t {
    std::shared_ptr<const float[]> coefficients;
};

/// Makes the state of a checked three-input tag in host byte order. Throws std::bad_alloc.
std::unique_ptr<icLutTetraState_t> icBuildTetraState(const icTagBase* tag, uint32_t inSpace,
                                                     uint32_t outSpace);

class TetraClut {
  public:
    using State = icLutTetraState_t;
    using Table = SimplexTable<TetraScheme>;
    static constexpr bool kClipsMiddle = true;

    explicit TetraClut(const icLutTetraState_t& s) : s_(s), strides_(Table::cellStrides(s)) {}

    void run(const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        uint32_t tetrahedron[kBlockPixels];
        Row f[TetraScheme::kDimensions];
        locateCells(s_, strides_.data(), x, pixels, cell, f);
        for (int i = 0; i < pixels; ++i) {
            tetrahedron[i] = static_cast<uint32_t>(tetrahedronOf(f[0][i], f[1][i], f[2][i]));
        }
        Table::evaluate(s_, cell, tetrahedron, pixels, values, [&f](const float* c, int i) {
            return c[0] * f[0][i] + c[1] * f[1][i] + c[2] * f[2][i] + c[3];
        });
    }

  private:
    const icLutTetraState_t& s_;
    std::array<uint32_t, TetraScheme::kDimensions> strides_;
};

}  // namespace lumoxa
