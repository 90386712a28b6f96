// SPDX-License-Identifier: Apache-2.0
//
// The 16-bit encodings of the connection spaces, and the one way in which real numbers become
// samples.
//
//   XYZ   1.0 = 32768, so the D50 white is 31595, 32768, 27030
//   Lab   L* 0..100 = 0..65280 (652.8 a unit), a* and b* = 32768 + 256 x value
//
// Both are the encodings of ICC version 2 (u1Fixed15 XYZ and legacy 16-bit Lab).
#pragma once

#include <algorithm>
#include <cstdint>
#include <limits>

namespace lumoxa {

/// The white of the connection space in real numbers (ICC.1:2010, 7.2.16).
inline constexpr double kPcsWhite[3] = {0.9642, 1.0, 0.8249};

inline constexpr uint16_t kXyzOne = 32768;
inline constexpr uint16_t kD50White[3] = {31595, 32768, 27030};
inline constexpr uint16_t kLabLMax = 65280;     // L* = 100
inline constexpr uint16_t kLabNeutral = 32768;  // a* = b* = 0
inline constexpr float kSampleMax16 = 65535.0f;

inline constexpr float kLabLScale = 652.8f;       // samples of a unit of L*
inline constexpr float kLabChromaScale = 256.0f;  // samples of a unit of a* and b*

// CIE 15: f(t) = t^(1/3) above the limit, else slope x t + offset; L* = 116 f(Y) - 16, a* = 500
// (f(X)
// - f(Y)), b* = 200 (f(Y) - f(Z)).
inline constexpr double kCieLinearBelow = 0.008856;
inline constexpr float kCieLinearSlope = 7.787f;
inline constexpr float kCieLinearOffset = 0.13793103f;  // 16 / 116

/// Integer part of `v`, truncated toward zero. What lies outside the 32-bit range, and what is not
/// a number, becomes INT32_MIN: the value that x86 conversion instructions give, here spelt out
/// because the language leaves it undefined.
inline int32_t truncated(float v) {
    // Bounded before the conversion, so that nothing is undefined and nothing branches.
    constexpr float kLowest = -2147483648.0f;
    constexpr float kHighest = 2147483520.0f;  // the largest float below 2^31
    const float bounded = v >= kLowest ? std::min(v, kHighest) : kLowest;
    const auto integer = static_cast<int32_t>(bounded);
    return v <= kHighest ? integer : std::numeric_limits<int32_t>::min();
}

inline int32_t truncated(double v) {
    return v > -2147483649.0 && v < 2147483648.0 ? static_cast<int32_t>(v)
                                                 : std::numeric_limits<int32_t>::min();
}

/// Adds 0.5, truncates, and stores the integer as it is: what does not fit the sample wraps, and
/// a kernel that uses this hands the wrapped value out.
template <class Sample, class Real>
Sample roundWrapped(Real v) {
    return static_cast<Sample>(static_cast<uint32_t>(truncated(v + Real{0.5})));
}

/// `v` limited to 0 .. `top`; not-a-number gives 0. Written so that it is a maximum and a minimum
/// to the processor, without branches.
template <class Real>
Real clipped(Real v, Real top) {
    const Real positive = v > Real{0} ? v : Real{0};
    return positive < top ? positive : top;
}

/// Adds 0.5, truncates and clips to 0 .. `top`. Not-a-number gives 0.
template <class Sample, class Real>
Sample roundClipped(Real v, Real top = static_cast<Real>(std::numeric_limits<Sample>::max())) {
    return static_cast<Sample>(clipped(v + Real{0.5}, top));
}

/// A s15Fixed16 number (1.0 = 65536) in the 16-bit XYZ encoding (1.0 = 32768).
constexpr uint16_t xyz16FromFixed(int32_t fixed) {
    return static_cast<uint16_t>(fixed >> 1);
}

}  // namespace lumoxa
