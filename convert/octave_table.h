// SPDX-License-Identifier: Apache-2.0
//
// A curve as a table whose steps grow with the value: equally many to every octave, so that powers
// and their roots are as exact near black as near white. The place of a value is the upper bits of
// its floating-point number.
#pragma once

#include <vector>

#include "convert/curve.h"

namespace lumoxa::engine {

class OctaveTable {
  public:
    /// Steps an octave. Interpolated linearly, a power x^g errs by g (g - 1) / (8 steps^2) of its
    /// value at most: 6e-6 for the 2.4 of sRGB, below a tenth of a 16-bit step.
    static constexpr int kSteps = 256;
    /// Octaves below 1. The root of 2.4 of the least value is 1e-5, below a 16-bit step; less is
    /// taken for 0.
    static constexpr int kOctaves = 40;

    explicit OctaveTable(const Curve& curve);

    /// Converts a row in place; values are clipped to 0..1.
    void run(float* row, int count) const;

    /// The largest difference from the curve at the middles of the steps above 2^-16: what a kink
    /// of the curve makes that falls into a step.
    float largestStray(const Curve& curve) const;

  private:
    std::vector<float> values_;
};

}  // namespace lumoxa::engine
