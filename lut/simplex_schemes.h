// SPDX-License-Identifier: Apache-2.0
//
// How the cells of three- and four-input grids are cut: into six tetrahedra along the axis of equal
// coordinates (Sakamoto and Itooka's scheme; see also Kasson et al., "Performing color space
// conversions with three-dimensional linear interpolation", 1995), and likewise into 24 pentahedra,
// simplices of five corners, one for each order of the four fractions.
//
// Invariants: the states are immutable; fractions lie in [0, 1] for inputs within the grid.
#pragma once

#include "lut/simplex_clut.h"

namespace lumoxa {

struct TetraScheme {
    static constexpr int kDimensions = 3;
    static constexpr auto kInterpolate = &RowKernels::tetrahedra;
};

using icLutTetraState_t = SimplexState<TetraScheme>;
using TetraClut = SimplexClut<TetraScheme>;

struct PentaScheme {
    static constexpr int kDimensions = 4;
    static constexpr auto kInterpolate = &RowKernels::pentahedra;
};

using icLutPentaState_t = SimplexState<PentaScheme>;
using PentaClut = SimplexClut<PentaScheme>;

}  // namespace lumoxa
