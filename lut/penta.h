// SPDX-License-Identifier: Apache-2.0
//
// Pentahedral interpolation of a four-input grid: the four-dimensional counterpart of tetrahedral
// interpolation. A cell is cut into 24 simplices of five corners, one for each order of the four
// fractions.
//
// Invariants: the state is immutable; fractions lie in [0, 1] for inputs within the grid.
#pragma once

#include "lut/simplex_clut.h"

namespace lumoxa {

/// Coordinate j is bit j of a corner's number and belongs to input dimension 3 - j. A simplex
/// follows the path that adds the coordinates from the largest fraction to the smallest.
struct PentaScheme {
    static constexpr int kDimensions = 4;
    static constexpr int kSimplices = 24;
    static constexpr int kCorners[kSimplices][5] = {
        {0, 1, 3, 7, 15},   {0, 2, 3, 7, 15},   {0, 1, 5, 7, 15},    //
        {0, 4, 5, 7, 15},   {0, 2, 6, 7, 15},   {0, 4, 6, 7, 15},    // coordinate 3 smallest
        {0, 1, 3, 11, 15},  {0, 2, 3, 11, 15},  {0, 1, 9, 11, 15},   //
        {0, 8, 9, 11, 15},  {0, 2, 10, 11, 15}, {0, 8, 10, 11, 15},  // coordinate 2 smallest
        {0, 1, 5, 13, 15},  {0, 4, 5, 13, 15},  {0, 1, 9, 13, 15},   //
        {0, 8, 9, 13, 15},  {0, 4, 12, 13, 15}, {0, 8, 12, 13, 15},  // coordinate 1 smallest
        {0, 2, 6, 14, 15},  {0, 4, 6, 14, 15},  {0, 2, 10, 14, 15},  //
        {0, 8, 10, 14, 15}, {0, 4, 12, 14, 15}, {0, 8, 12, 14, 15},  // coordinate 0 smallest
    };
    static constexpr int dimensionOf(int coordinate) { return 3 - coordinate; }
    static constexpr int bitOf(int coordinate) { return coordinate; }
    static int select(const Row* f, int i);
};

/// Sorts the four fractions in place into ascending order by a stable insertion sort and returns
/// the simplex whose path adds the coordinates from the largest fraction to the smallest. Of two
/// equal fractions, the lower-numbered coordinate counts as the smaller.
constexpr int simplexOf(float (&f)[4]) {
    int order[4] = {0, 1, 2, 3};
    for (int i = 1; i < 4; ++i) {
        const float value = f[i];
        const int coordinate = order[i];
        int j = i;
        for (; j > 0 && f[j - 1] > value; --j) {
            f[j] = f[j - 1];
            order[j] = order[j - 1];
        }
        f[j] = value;
        order[j] = coordinate;
    }
    const int first = 1 << order[3];
    const int second = first | 1 << order[2];
    const int third = second | 1 << order[1];
    int simplex = 0;
    while (PentaScheme::kCorners[simplex][1] != first ||
           PentaScheme::kCorners[simplex][2] != second ||
           PentaScheme::kCorners[simplex][3] != third) {
        ++simplex;
    }
    return simplex;
}

/// simplexOf() without a sort: the outcomes of the six comparisons f_i > f_j, i < j, are an index
/// into a table of simplices.
class SimplexSelector {
  public:
    static constexpr uint8_t select(float f0, float f1, float f2, float f3) {
        return kSimplexOfOutcome[outcome(f0, f1, f2, f3)];
    }

  private:
    static constexpr unsigned outcome(float f0, float f1, float f2, float f3) {
        return unsigned{f0 > f1} | unsigned{f0 > f2} << 1 | unsigned{f0 > f3} << 2 |
               unsigned{f1 > f2} << 3 | unsigned{f1 > f3} << 4 | unsigned{f2 > f3} << 5;
    }
    static constexpr std::array<uint8_t, 64> makeTable() {
        std::array<uint8_t, 64> table{};
        for (int order = 0; order < 256;
             ++order) {  // every ranking of four fractions, ties included
            const float rank[4] = {float(order & 3), float(order >> 2 & 3), float(order >> 4 & 3),
                                   float(order >> 6 & 3)};
            float sorted[4] = {rank[0], rank[1], rank[2], rank[3]};
            table[outcome(rank[0], rank[1], rank[2], rank[3])] =
                static_cast<uint8_t>(simplexOf(sorted));
        }
        return table;
    }
    static const std::array<uint8_t, 64> kSimplexOfOutcome;
};

inline constexpr std::array<uint8_t, 64> SimplexSelector::kSimplexOfOutcome =
    SimplexSelector::makeTable();

inline int PentaScheme::select(const Row* f, int i) {
    return SimplexSelector::select(f[3][i], f[2][i], f[1][i], f[0][i]);
}

using icLutPentaState_t = SimplexState<PentaScheme>;
using PentaClut = SimplexClut<PentaScheme>;

}  // namespace lumoxa
