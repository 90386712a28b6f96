// SPDX-License-Identifier: Apache-2.0
#include "combine/grid_size.h"

#include <algorithm>

#include "base/power.h"

namespace lumoxa {
namespace {

constexpr uint32_t kBudget = 8388608;  // samples of a grid, 2^23
// A pentahedral cell counts with the 5 coefficients of its 24 simplices for each output, although
// evaluation works them out from the nodes: grids keep the sizes that tables of them would allow.
constexpr uint32_t kPentaFloatsPerOutput = 120;
constexpr uint32_t kFewestPoints = 3;    // of a grid that counts as one
constexpr uint32_t kFormulaPoints = 31;  // where only formulas bend the chain
constexpr uint32_t kCurvePoints = 255;   // the same with one input

/// The whole part of a power whose exponent is rounded: 1.0 / 3 is less than a third, so that the
/// cube root of 2^21 is 127 and not 128. The size of a result's grid follows from it.
uint32_t root(uint32_t budget, uint32_t n) {
    return static_cast<uint32_t>(power(static_cast<double>(budget), 1.0 / n));
}

/// Grid points for a chain in which no transform has a grid of its own. Such a chain is linear
/// between its end curves unless a formula stands in it, so the first stage's curves go into the
/// input tables and three points are enough.
uint32_t pointsWithoutGrid(const ExpandedChain& chain, bool& identityInput) {
    const uint32_t first = chain.first().kind;
    const uint32_t last = chain.last().kind;
    if (last == kKindLabToGray || last == kKindXyzToLab) {
        return chain.first().inChannels == 1 ? kCurvePoints : kFormulaPoints;
    }
    if (first == kKindGrayToLab) return kFormulaPoints;
    identityInput = false;
    return first == kKindLabToXyz ? kFormulaPoints : kFewestPoints;
}

}  // namespace

GridSize chooseGridSize(const ExpandedChain& chain) {
    GridSize size;
    uint32_t maxGrid = chain.maxGrid;
    if (maxGrid < kFewestPoints) maxGrid = pointsWithoutGrid(chain, size.identityInput);
    const uint32_t n = chain.first().inChannels;
    const uint32_t budget = kBudget / chain.maxChannels;
    uint32_t points = std::min(maxGrid, root(budget, n));
    if (n == 4) {
        const uint32_t pentaPoints = root(budget / kPentaFloatsPerOutput, 4);
        if (pentaPoints > points / 2) {
            points = pentaPoints;
            size.pentahedral = true;
        }
    }
    size.points = static_cast<int>(points | 1);
    return size;
}

}  // namespace lumoxa
