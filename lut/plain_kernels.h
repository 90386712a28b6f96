// SPDX-License-Identifier: Apache-2.0
//
// Multilinear interpolation over all 2^n corners of a grid cell, for any number of inputs.
#pragma once

#include "lut/lut_stages.h"

namespace lumoxa {

/// Corner values are reduced pairwise along one dimension after another, the last input dimension
/// first. Corners arrive in counting order, and like the carries of a binary counter, two finished
/// subcubes of one size merge as soon as the second is there; so one row of partial results a
/// dimension is enough, instead of one a corner.
class PlainClut {
  public:
    using State = icLutState_t;
    static constexpr bool kClipsMiddle = false;
    static constexpr bool kInGroups = false;

    explicit PlainClut(const icLutState_t& s) : s_(s) {}

    void run(const Row* x, int pixels, Row* values) const {
        uint32_t cell[kBlockPixels];
        Row fraction[kMaxInputs];
        locateCells(s_, s_.strides, x, pixels, cell, fraction);
        for (int o = 0; o < s_.outChannels; ++o) {
            if (s_.clut8 != nullptr) {
                reduce(s_.clut8 + o, cell, fraction, pixels, values[o]);
            } else {
                reduce(s_.clut16 + o, cell, fraction, pixels, values[o]);
            }
        }
    }

  private:
    template <class Entry>
    void reduce(const Entry* clut, const uint32_t* cell, const Row* fraction, int pixels,
                float* value) const {
        Row row;
        Row partial[kMaxInputs];  // of finished subcubes, by their dimension count
        for (uint32_t corner = 0; corner < s_.cornerCount; ++corner) {
            const Entry* entry = clut + s_.cornerOffsets[corner];
            for (int i = 0; i < pixels; ++i)
                row[i] = static_cast<float>(entry[cell[i]]);
            int bit = 0;
            for (; (corner >> bit & 1) != 0; ++bit) {
                const float* low = partial[bit];
                const float* f = fraction[s_.inChannels - 1 - bit];
                for (int i = 0; i < pixels; ++i)
                    row[i] = low[i] + (row[i] - low[i]) * f[i];
            }
            if (bit < s_.inChannels) std::copy_n(row, pixels, partial[bit]);
        }
        std::copy_n(row, pixels, value);
    }

    const icLutState_t& s_;
};

}  // namespace lumoxa
