// SPDX-License-Identifier: Apache-2.0
//
// A curve as a table of bytes, read at the upper bits of a floating-point number: the last stage of
// 8-bit pixels without a grid.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "convert/octave_table.h"

namespace lumoxa::engine {

class OctaveBytes {
  public:
    /// Steps an octave. The upper half of the range has some 18 of them for each byte, so that a
    /// byte differs from the exact one for about one value in a hundred, and by 1.
    static constexpr int kSteps = 2048;

    OctaveBytes(const Curve& curve, const OctaveTable& table);

    /// Bits of a float below those that choose the step.
    static constexpr int kRestBits = 12;
    static_assert(1 << (23 - kRestBits) == kSteps);

    /// Values from here on have steps of their own; the curve is the same byte for less.
    float least() const { return least_; }
    /// By the step of a value between least() and 1: its upper bits, less those of least().
    const uint8_t* bytes() const { return bytes_.data(); }
    int32_t firstStep() const { return std::bit_cast<int32_t>(least_) >> kRestBits; }

  private:
    float least_;
    std::vector<uint8_t> bytes_;
};

}  // namespace lumoxa::engine
