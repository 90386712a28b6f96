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
///   kDimensions             n
///   laterFirst(f, i, a, b)  for dimensions a < b: whether the path of pixel i takes b before a;
///                           f are the rows of fractions by dimension
///   dimensionOf(j)          dimension of the sum's term j
template <class Scheme>
struct SimplexState : icLutState_t {
    std::shared_ptr<const float[]> nodes;
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

    explicit SimplexClut(const State& s) : s_(s) {
        auto stride = static_cast<uint32_t>(outputGroups(s) * kOutputGroup);
        for (int d = kDimensions; d-- > 0;) {
            strides_[d] = stride;
            stride *= static_cast<uint32_t>(s.lastCell[d] + 2);
        }
    }

    void run(const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        Row fraction[kDimensions];
        locateCells(s_, strides_, x, pixels, cell, fraction);
        runCells(cell, fraction, pixels, values);
    }

    /// The cells and fractions of rows, for callers that look them up: runCells() goes on.
    void locate(const Row* x, int pixels, uint32_t* cell, Row* fraction) const {
        locateCells(s_, strides_, x, pixels, cell, fraction);
    }

    void runCells(const uint32_t* cell, const Row* fraction, int pixels, Row* values) const {
        Places from[kDimensions];
        findPaths(cell, fraction, pixels, from);
        for (int o = 0; o < s_.outChannels; o += kOutputGroup)
            interpolate(s_.nodes.get() + o, cell, from, fraction, pixels, values + o);
    }

  private:
    static constexpr int kDimensions = Scheme::kDimensions;
    using Places = uint32_t[kBlockPixels];  // of one node a pixel
    using Group = float[kOutputGroup];

    /// The node from which each pixel's path steps along each dimension: beyond the cell's lowest
    /// by one step along every dimension that comes before. All without branches, which noise would
    /// mispredict.
    void findPaths(const uint32_t* cell, const Row* fraction, int pixels, Places* from) const {
        for (int d = 0; d < kDimensions; ++d)
            std::copy_n(cell, pixels, from[d]);
        for (int a = 0; a < kDimensions; ++a) {
            for (int b = a + 1; b < kDimensions; ++b) {
                const uint32_t strideA = strides_[a];
                const uint32_t strideB = strides_[b];
                for (int i = 0; i < pixels; ++i) {
                    const uint32_t mask = Scheme::laterFirst(fraction, i, a, b) ? ~0U : 0U;
                    from[a][i] += strideB & mask;
                    from[b][i] += strideA & ~mask;
                }
            }
        }
    }

    /// A group of outputs, worked out pixel by pixel and handed on row by row.
    void interpolate(const float* nodes, const uint32_t* cell, const Places* from,
                     const Row* fraction, int pixels, Row* values) const {
        Group group[kBlockPixels];
        for (int i = 0; i < pixels; ++i) {
            Group sum;
            for (int j = 0; j < kDimensions; ++j) {
                const int d = Scheme::dimensionOf(j);
                const float* low = nodes + from[d][i];
                const float* high = low + strides_[d];
                const float f = fraction[d][i];
                for (int o = 0; o < kOutputGroup; ++o) {
                    const float term = (high[o] - low[o]) * f;
                    sum[o] = j == 0 ? term : sum[o] + term;
                }
            }
            const float* lowest = nodes + cell[i];
            for (int o = 0; o < kOutputGroup; ++o)
                group[i][o] = sum[o] + lowest[o];
        }
        for (int i = 0; i < pixels; ++i) {
            for (int o = 0; o < kOutputGroup; ++o)
                values[o][i] = group[i][o];
        }
    }

    const State& s_;
    uint32_t strides_[kDimensions];  // in floats
};

}  // namespace lumoxa
