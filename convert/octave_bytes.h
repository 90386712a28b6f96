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

/// How to find a value's byte. The upper bits of the value choose a step; a step holds the byte at
/// its beginning, above that the byte at its end, and in the upper half the first of the lower bits
/// that belong to the end.
struct ByteLookup {
    static constexpr int kEndShift = 8, kRestShift = 16;

    const uint32_t* steps;
    uint32_t firstStep;
    uint32_t restMask;
    int restBits;
    float least;  ///< a power of two; all that is less has one byte

    /// What isn't a number counts as black.
    uint8_t at(float value) const {
        const float raised = value > least ? value : least;
        const auto bits = std::bit_cast<uint32_t>(raised < 1.0f ? raised : 1.0f);
        const uint32_t step = steps[(bits >> restBits) - firstStep];
        return static_cast<uint8_t>((bits & restMask) < step >> kRestShift ? step
                                                                           : step >> kEndShift);
    }
};

/// Steps are equally many to every octave, as they are to floating-point numbers, and so narrow
/// that the byte changes once in each.
class OctaveBytes {
  public:
    explicit OctaveBytes(const Curve& curve);

    ByteLookup lookup() const {
        return {steps_.data(), firstStep(), (uint32_t{1} << restBits_) - 1, restBits_, least_};
    }

  private:
    uint32_t firstStep() const { return std::bit_cast<uint32_t>(least_) >> restBits_; }
    bool fill(const Curve& curve);

    float least_;
    int restBits_;
    std::vector<uint32_t> steps_;
};

}  // namespace lumoxa::engine
