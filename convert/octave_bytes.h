// SPDX-License-Identifier: Apache-2.0
//
// A curve that ends in bytes, looked up by the bits of a floating-point number: the last stage of
// 8-bit pixels without a grid. The bytes are those of the curve itself.
#pragma once

#include <bit>
#include <cstdint>
#include <vector>

#include "convert/curve.h"

namespace lumoxa::engine {

/// The bits of a value, from least() to 1, above restBits() choose a step, counted from
/// firstStep(). A step holds the byte at its beginning, above that the byte at its end, and in the
/// upper half the first rest that belongs to the end. Steps are equally many to every octave, as
/// they are to floating-point numbers, and so narrow that the byte changes once in each.
class OctaveBytes {
  public:
    static constexpr int kEndShift = 8, kRestShift = 16;

    OctaveBytes() = default;
    explicit OctaveBytes(const Curve& curve);

    const std::vector<uint32_t>& steps() const { return steps_; }
    int restBits() const { return restBits_; }
    uint32_t firstStep() const { return std::bit_cast<uint32_t>(least_) >> restBits_; }
    /// A power of two; all that is less has one byte.
    float least() const { return least_; }

  private:
    bool fill(const Curve& curve);

    float least_ = 1;
    int restBits_ = 0;
    std::vector<uint32_t> steps_;
};

}  // namespace lumoxa::engine
