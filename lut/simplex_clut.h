// SPDX-License-Identifier: Apache-2.0
//
// Interpolation of a grid by simplices: the state with its coefficient table, and the stage that
// the LUT kernels run. A `Scheme` (tetra.h, penta.h) says how cells are cut:
//   select(f, i)           simplex of pixel i, f being the rows of fractions by input dimension
// and what SimplexTable asks of it.
#pragma once

#include <memory>
#include <type_traits>

#include "lut/lut_stages.h"
#include "lut/simplex_table.h"

namespace lumoxa {

/// A LUT state with the coefficients of its grid: [cell][output][simplex][coefficient].
template <class Scheme>
struct SimplexState : icLutState_t {
    std::shared_ptr<const float[]> coefficients;
};

/// Makes the state of a checked tag in host byte order. Throws std::bad_alloc.
template <class Scheme>
std::unique_ptr<SimplexState<Scheme>> buildSimplexState(const icTagBase* tag, uint32_t inSpace,
                                                        uint32_t outSpace) {
    auto state = std::make_unique<SimplexState<Scheme>>();
    icBuildLutState(tag, inSpace, outSpace, *state);
    if (state->hasClut) state->coefficients = SimplexTable<Scheme>::build(*state);
    return state;
}

template <class Scheme>
class SimplexClut {
  public:
    using State = SimplexState<Scheme>;
    using Table = SimplexTable<Scheme>;
    static constexpr bool kClipsMiddle = true;

    explicit SimplexClut(const State& s) : s_(s), strides_(Table::cellStrides(s)) {}

    void run(const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        uint32_t simplex[kBlockPixels];
        Row fraction[Table::kDimensions];
        locateCells(s_, strides_.data(), x, pixels, cell, fraction);
        for (int i = 0; i < pixels; ++i) {
            simplex[i] = static_cast<uint32_t>(Scheme::select(fraction, i));
        }
        const auto interpolate = [&](auto outputs) {
            interpolateOutputs(outputs, cell, simplex, fraction, pixels, values);
        };
        // The counts of nearly all profiles are constants, so that their loops unroll.
        switch (s_.outChannels) {
            case 3:
                return interpolate(std::integral_constant<int, 3>());
            case 4:
                return interpolate(std::integral_constant<int, 4>());
            default:
                return interpolate(s_.outChannels);
        }
    }

  private:
    template <class Count>
    void interpolateOutputs(Count outputs, const uint32_t* cell, const uint32_t* simplex,
                            const Row* fraction, int pixels, Row* values) const {
        const auto n = static_cast<size_t>(outputs);
        for (int i = 0; i < pixels; ++i) {
            const float* c = s_.coefficients.get() + cell[i] * n * Table::kFloatsPerCellAndOutput +
                             size_t{simplex[i]} * Table::kVertices;
            for (size_t o = 0; o < n; ++o, c += Table::kFloatsPerCellAndOutput) {
                values[o][i] = affine(c, fraction, i);
            }
        }
    }

    /// c_0 f_0 + c_1 f_1 + ... + c_n, from left to right.
    static float affine(const float* c, const Row* fraction, int i) {
        float sum = c[0] * fraction[Scheme::dimensionOf(0)][i];
        for (int j = 1; j < Table::kDimensions; ++j) {
            sum += c[j] * fraction[Scheme::dimensionOf(j)][i];
        }
        return sum + c[Table::kDimensions];
    }

    const State& s_;
    std::array<uint32_t, size_t{Table::kDimensions}> strides_;
};

}  // namespace lumoxa
