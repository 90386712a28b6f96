// SPDX-License-Identifier: Apache-2.0
//
// The stages of a LUT evaluated pixel by pixel, with the plainest code that keeps the order of the
// library's single-precision arithmetic, so that results are compared bit for bit.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

struct ReferenceLut {
    using Table = std::vector<float>;

    bool lut8 = false, inIsPcs = false, outIsPcs = false;
    size_t inputs = 3, outputs = 3;
    std::vector<Table> first, middle, last;    // curves before and after the matrix, after the grid
    std::vector<std::array<float, 4>> matrix;  // none, or three rows with an offset each
    std::vector<int> grid;                     // empty without a grid
    Table clut;                                // the last input varies fastest
    float clutMax = 65535;                     // 255 for 8-bit grids

    /// The content of a lut8 or lut16 tag, whose tables must all be given.
    static ReferenceLut of(const LutContent& content, bool lut8, const std::string& inSpace,
                           const std::string& outSpace);

    std::vector<uint16_t> convert(const std::vector<uint16_t>& pixels, int inBits,
                                  int outBits) const;

  private:
    void inputStage(Table& x, int inBits) const;
    Table clutStage(const Table& x) const;
    uint16_t outputStage(float v, size_t channel, int outBits) const;
    float corner(const std::vector<int>& cell, unsigned steps, size_t channel) const;
    float multilinear(const std::vector<int>& cell, const Table& f, size_t channel) const;
    float simplex(const std::vector<int>& cell, const Table& f, size_t channel) const;
};

/// Linear interpolation in a table; beyond its end, the last segment goes on.
float lookup(const ReferenceLut::Table& table, float position);

/// A parametric curve at 0..1, the power multiplied by one scale and the rest of it by another.
double parametric(uint32_t function, const std::vector<double>& parameters, double x, double power,
                  double rest);

}  // namespace lumoxa_test
