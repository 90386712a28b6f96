// SPDX-License-Identifier: Apache-2.0
//
// The stages of a LUT evaluated pixel by pixel, in double precision.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

/// Values between the stages are 0..1.
struct ReferenceLut {
    using Table = std::vector<double>;

    bool lut8 = false, inIsPcs = false, outIsPcs = false;
    size_t inputs = 3, outputs = 3;
    std::vector<Table> first, middle, last;  // curves before and after the matrix, after the grid
    std::vector<std::array<double, 4>> matrix;  // none, or three rows with an offset each
    std::vector<uint8_t> grid;                  // empty without a grid
    Table clut;                                 // the last input varies fastest

    /// The content of a lut8 or lut16 tag, whose tables must all be given.
    static ReferenceLut of(const LutContent& content, bool lut8, const std::string& inSpace,
                           const std::string& outSpace);

    std::vector<uint16_t> convert(const std::vector<uint16_t>& pixels, int inBits,
                                  int outBits) const;

  private:
    void inputStage(Table& x, int inBits) const;
    std::vector<std::pair<size_t, double>> corners(const Table& x) const;
    uint16_t outputStage(double v, size_t channel, int outBits) const;
};

/// 16-bit values as 0..1; of those stored in bytes, the upper half.
ReferenceLut::Table unitTable(const std::vector<uint16_t>& values, bool bytes = false);

/// Linear interpolation in a table at 0..1.
double lookup(const ReferenceLut::Table& table, double at);

/// A parametric curve at 0..1, the power multiplied by one scale and the rest of it by another.
double parametric(uint32_t function, const std::vector<double>& parameters, double x, double power,
                  double rest);

}  // namespace lumoxa_test
