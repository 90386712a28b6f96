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

    /// Ties fall to one fixed side, which matters because equal values summed in another order may
    /// round differently: of two equal fractions that are the larger ones the later dimension comes
    /// first, of two that are the smaller ones the earlier; of three the order is 2, 0, 1.
    static bool laterFirst(const Row* f, int i, int a, int b) {
        const float fa = f[a][i];
        const float fb = f[b][i];
        const float other = f[kDimensions - a - b][i];
        const bool tieToLater = b == 2 ? !(other > fb) : fb > other;
        return (fb > fa) | (!(fa > fb) & tieToLater);
    }
    static constexpr int dimensionOf(int term) { return term; }
};

using icLutTetraState_t = SimplexState<TetraScheme>;
using TetraClut = SimplexClut<TetraScheme>;

struct PentaScheme {
    static constexpr int kDimensions = 4;

    /// Of two equal fractions, the earlier dimension comes first.
    static bool laterFirst(const Row* f, int i, int a, int b) { return f[b][i] > f[a][i]; }
    /// Terms are added up from the last dimension to the first.
    static constexpr int dimensionOf(int term) { return kDimensions - 1 - term; }
};

using icLutPentaState_t = SimplexState<PentaScheme>;
using PentaClut = SimplexClut<PentaScheme>;

}  // namespace lumoxa
