// SPDX-License-Identifier: Apache-2.0
//
// Multilinear interpolation over all 2^n corners of a grid cell, for any number of inputs.
#pragma once

#include "lut/lut_stages.h"

namespace lumoxa {

/// Corner values are reduced pairwise along one dimension after another, the last input dimension
/// first. Corners arrive in counting order, and like the carries of a binary counter, two finished
/// subcubes of one size merge as soon as the second is there; so a cell needs one row of partial
/// results a dimension, not one a corner.
class PlainClut {
  public:
    using State = icLutState_t;
    static constexpr bool kClipsMiddle = false;

    explicit PlainClut(const icLutState_t& s) : s_(s) {}

    void run(const Row* x, int pixels, Row* values) const {
        if (s_.clut8 != nullptr) {
            interpolate(s_.clut8, x, pixels, values);
        } else {
            interpolate(s_.clut16, x, pixels, values);
        }
    }

  private:
    /// Outputs reduced together; a tag with more goes through its cells several times.
    static constexpr int kGroup = 16;

    template <class Entry>
    void interpolate(const Entry* clut, const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        Row fraction[kMaxInputs];
        locateCells(s_, s_.strides, x, pixels, cell, fraction);
        for (int first = 0; first < s_.outChannels; first += kGroup) {
            const int outputs = std::min(kGroup, s_.outChannels - first);
            for (int i = 0; i < pixels; ++i) {
                float f[kMaxInputs];  // by corner bit
                for (int d = 0; d < s_.inChannels; ++d)
                    f[s_.inChannels - 1 - d] = fraction[d][i];
                float result[kGroup];
                reduce(clut + cell[i] + first, f, outputs, result);
                for (int o = 0; o < outputs; ++o)
                    values[first + o][i] = result[o];
            }
        }
    }

    template <class Entry>
    void reduce(const Entry* cell, const float* f, int outputs, float* row) const {
        float partial[kMaxInputs][kGroup];
        for (uint32_t corner = 0; corner < s_.cornerCount; ++corner) {
            const Entry* entry = cell + s_.cornerOffsets[corner];
            for (int o = 0; o < outputs; ++o)
                row[o] = static_cast<float>(entry[o]);
            int bit = 0;
            for (; (corner >> bit & 1) != 0; ++bit) {
                const float* low = partial[bit];
                for (int o = 0; o < outputs; ++o)
                    row[o] = low[o] + (row[o] - low[o]) * f[bit];
            }
            if (bit < s_.inChannels) std::copy_n(row, outputs, partial[bit]);
        }
    }

    const icLutState_t& s_;
};

}  // namespace lumoxa
