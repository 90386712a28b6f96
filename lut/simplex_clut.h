// SPDX-License-Identifier: Apache-2.0
//
// Interpolation of a grid by simplices: the state with its nodes, and the stage that the LUT
// kernels run.
//
// A cell is cut into simplices that all hold its lowest and its highest corner, one for each path
// between the two along the cell's edges. A pixel's path takes the dimensions from the largest
// fraction to the smallest. Inside a simplex the interpolant through the corner values is affine,
// and the coefficient of a dimension is the difference of the two nodes that the path's step along
// that dimension joins: a difference of integers below 2^16, exact in single precision.
#pragma once

#include <memory>

#include "lut/lut_stages.h"
#include "lut/simplex_nodes.h"

namespace lumoxa {

/// A LUT state with the nodes of its grid. `Scheme` (simplex_schemes.h) says how a cell is cut:
///   kDimensions   n
///   kInterpolate  the row kernel
template <class Scheme>
struct SimplexState : icLutState_t {
    std::shared_ptr<const uint16_t[]> nodes;
};

/// Makes the state of a checked tag in host byte order. Throws std::bad_alloc.
template <class Scheme>
std::unique_ptr<SimplexState<Scheme>> buildSimplexState(const icTagBase* tag, uint32_t inSpace,
                                                        uint32_t outSpace) {
    auto state = std::make_unique<SimplexState<Scheme>>();
    icBuildLutState(tag, inSpace, outSpace, *state);
    if (state->hasClut) state->nodes = packNodes(*state);
    return state;
}

template <class Scheme>
class SimplexClut {
  public:
    using State = SimplexState<Scheme>;
    static constexpr bool kClipsMiddle = true;
    static constexpr bool kInGroups = true;

    explicit SimplexClut(const State& s) : s_(s) {
        auto stride = static_cast<uint32_t>(paddedOutputs(s.outChannels));
        for (int d = kDimensions; d-- > 0;) {
            strides_[d] = stride;
            stride *= static_cast<uint32_t>(s.lastCell[d] + 2);
        }
    }

    /// All outputs as rows.
    void run(const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        Row fraction[kDimensions];
        locate(x, pixels, cell, fraction);
        runCells(cell, fraction, pixels, values);
    }
    void runCells(const uint32_t* cell, const Row* fraction, int pixels, Row* values) const {
        for (int o = 0; o < s_.outChannels; o += kOutputGroup) {
            Groups groups;
            interpolate(o, cell, fraction, pixels, groups);
            for (int i = 0; i < pixels; ++i) {
                for (int c = 0; c < kOutputGroup; ++c)
                    values[o + c][i] = groups[i * kOutputGroup + c];
            }
        }
    }

    /// The first four outputs.
    void runOneGroup(const Row* x, int pixels, Groups& groups) const {
        uint32_t cell[kBlockPixels];
        Row fraction[kDimensions];
        locate(x, pixels, cell, fraction);
        interpolate(0, cell, fraction, pixels, groups);
    }

    /// The cells and fractions of rows, for callers that look them up: interpolate() or runCells()
    /// goes on.
    void locate(const Row* x, int pixels, uint32_t* cell, Row* fraction) const {
        locateCells(s_, strides_, x, pixels, cell, fraction);
    }

    /// The group of outputs from `output` on.
    void interpolate(int output, const uint32_t* cell, const Row* fraction, int pixels,
                     Groups& groups) const {
        (rowKernels().*Scheme::kInterpolate)(s_.nodes.get() + output, strides_, cell, fraction,
                                             pixels, groups);
    }

  private:
    static constexpr int kDimensions = Scheme::kDimensions;

    const State& s_;
    uint32_t strides_[kDimensions];  // in numbers of nodes
};

}  // namespace lumoxa
