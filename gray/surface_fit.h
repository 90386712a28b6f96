// SPDX-License-Identifier: Apache-2.0
//
// Surfaces over a square grid of measurements, and the simplex that searches them.
#pragma once

#include <cstdint>
#include <vector>

#include "gray/row_matrix.h"

namespace lumoxa {

/// Up to three surfaces over one grid, and the simplex of a search in their plane. It lives for one
/// table build. The grid's size belongs to the context, so several threads can search at once.
struct icSurfaceFit_t {
    /// @param n       grid points of either axis, at least 2
    /// @param second  kept as it is
    /// Throws std::bad_alloc.
    icSurfaceFit_t(int32_t n, int32_t second);

    RowMatrix<double> simplex;  // 3 vertices of 2 coordinates
    double values[3];
    std::vector<float> abscissae;  // of both axes of every surface
    std::vector<float> scratchOrdinates;
    std::vector<float> scratchSeconds;
    struct Surface {
        RowMatrix<float> values;   // row r lies at the second coordinate abscissae[r]
        RowMatrix<float> seconds;  // second derivatives along the rows
    } surfaces[3];
    int32_t dimension = 2;
    int32_t reserved[2] = {0, 0};
    int32_t n;
    int32_t second;

    /// Makes the row splines of a surface whose values are filled in.
    void buildRows(Surface& surface);

    /// A surface at (first, second): cubic along the first axis, piecewise linear along the second.
    float evaluate(const Surface& surface, const float* point);
};

/// The second and the third surface at a point of two coordinates.
void icSurfaceEval(icSurfaceFit_t& context, const float* point, float* results);

}  // namespace lumoxa
