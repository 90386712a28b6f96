// SPDX-License-Identifier: Apache-2.0
//
// The cube root and the power of one number, for loops over rows. Straight arithmetic in double: no
// branch, no table, no call, so that compilers turn the loops into vector code, and every operation
// rounds once (IEC 60559), so that a vector of any length holds the bits of the single number.
// Integers of 64 bits are unsigned, and only added, masked and shifted: SSE2 can do no more.
//
// Functions are static: each file that includes this compiles a copy for its own instruction set.
#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

namespace lumoxa::elementary {

static_assert(std::numeric_limits<double>::is_iec559 && std::numeric_limits<float>::is_iec559);

inline constexpr int kFractionBits = 52;
inline constexpr uint64_t kBiasedZero = 1023;                    // the exponent field of 1.0
inline constexpr double kFractionSteps = 4503599627370496.0;     // 2^52
inline constexpr double kRoundToInteger = 1.5 * kFractionSteps;  // adding it leaves no fraction

// Values are chosen by masks: `?:` invites GCC to move the computation of a value into a branch,
// and then it leaves the loop as it is. SSE2 compares floats and 32-bit integers; doubles are
// compared by the sign of their difference.

/// All bits where v > 0, else none; none for what is not a number.
static inline uint32_t positiveMask(float v) {
    return uint32_t{0} - uint32_t{v > 0.0f};
}

/// `v` where the mask is set, else 0.
static inline float masked(uint32_t mask, float v) {
    return std::bit_cast<float>(std::bit_cast<uint32_t>(v) & mask);
}

/// `v`, at least 0 and at most the largest float; 0 for what is not a number.
static inline float positive(float v) {
    constexpr auto kMost = std::bit_cast<int32_t>(std::numeric_limits<float>::max());
    const auto order = std::bit_cast<int32_t>(masked(positiveMask(v), v));
    return std::bit_cast<float>(std::min(order, kMost));
}

/// All bits where a >= b, else none; for numbers.
static inline uint64_t atLeastMask(double a, double b) {
    constexpr int kSignBit = 63;
    return (std::bit_cast<uint64_t>(a - b) >> kSignBit) - 1;
}

/// `a` where the mask is set, else `b`.
static inline double select(uint64_t mask, double a, double b) {
    return std::bit_cast<double>((std::bit_cast<uint64_t>(a) & mask) |
                                 (std::bit_cast<uint64_t>(b) & ~mask));
}

/// 2^52 + v for an integer v below 2^52, which becomes the fraction of the double. That is how SSE2
/// converts 64-bit integers: the unit in the last place is 1 from 2^52 to 2^53.
static inline double raised(uint64_t v) {
    return std::bit_cast<double>(v | std::bit_cast<uint64_t>(kFractionSteps));
}

// --- cube root --------------------------------------------------------------------------------

/// Halley's step towards the cube root of x. From t = (1 + e) root it leads to the relative error
/// e^3 (2 + e) / (2 (1 + e)^3 + 1).
static inline double halleyStep(double t, double x) {
    const double cube = t * t * t;
    return t * (cube + (x + x)) / (cube + cube + x);
}

/// v^(1/3) for v > 0 that is a float or about as large; the relative error is below 1e-14. For 0,
/// some small number.
///
/// The upper half of a double, seen as an integer, is a logarithm: exponent and fraction stand for
/// log2 of it as a polygon does. A third of that is within 3.2 % of the root when a thirtieth is
/// taken off, and Halley's steps leave 2.3e-5 and then 8.2e-15.
static inline double positiveCubeRoot(double v) {
    // Vanishes in all but 0, whose guess would have a subnormal cube; those are slow.
    constexpr double kTiny = 0x1p-220;
    constexpr int kHalf = 32;
    constexpr double kUnit = 1048576.0;  // 2^20, of the exponent in the upper half
    constexpr double kTwoThirdsOfBias = (1023.0 * 2 / 3 - 1.0 / 30) * kUnit;
    // Both the integer that comes in and the one that goes out have 2^52 added.
    constexpr double kOffset = kTwoThirdsOfBias + kFractionSteps * 2 / 3;
    const double x = v + kTiny;
    const double logarithm = raised(std::bit_cast<uint64_t>(x) >> kHalf);
    const double third = logarithm * (1.0 / 3) + kOffset;
    const double guess = std::bit_cast<double>(std::bit_cast<uint64_t>(third) << kHalf);
    return halleyStep(halleyStep(guess, x), x);
}

/// v^(1/3); 0 for what is not above 0.
static inline float cubeRoot(float v) {
    const double root = positiveCubeRoot(static_cast<double>(positive(v)));
    return masked(positiveMask(v), static_cast<float>(root));
}

// --- power ------------------------------------------------------------------------------------

// Series are summed by Estrin's scheme: a processor works on several pairs of terms at once.

inline constexpr double kLn2 = 0.693147180559945309417232121458;

/// log2 x for x > 0 and normal; 0 exactly for 1; some number below -1000 for 0. The absolute error
/// is below 3e-11.
///
/// x = m 2^e with m between sqrt(1/2) and sqrt(2); ln m = 2 artanh s with s = (m - 1) / (m + 1), so
/// |s| < 0.1716, and what the series leaves out is below 2 / ln 2 x s^13 / 13 / (1 - s^2)
/// = 2.6e-11.
static inline double log2(double x) {
    constexpr uint64_t kSqrtHalf = 0x3FE6A09E667F3BCD;  // the bits of sqrt(1/2)
    constexpr uint64_t kFractionMask = (uint64_t{1} << kFractionBits) - 1;
    constexpr double kTwice = 2 / kLn2;
    constexpr double kRaisedZero = kFractionSteps + static_cast<double>(kBiasedZero);

    const uint64_t bits = std::bit_cast<uint64_t>(x) - kSqrtHalf + (kBiasedZero << kFractionBits);
    const double exponent = raised(bits >> kFractionBits) - kRaisedZero;
    const double m = std::bit_cast<double>((bits & kFractionMask) + kSqrtHalf);
    const double s = (m - 1.0) / (m + 1.0);
    const double q = s * s;
    const double q2 = q * q;
    const double series = ((kTwice + q * (kTwice / 3)) + q2 * (kTwice / 5 + q * (kTwice / 7))) +
                          q2 * q2 * (kTwice / 9 + q * (kTwice / 11));
    return exponent + s * series;
}

/// 2^z for -1000 < z < 1000; 1 exactly for 0; some bits for every other z.
///
/// z = n + f with an integer n and |f| <= 1/2; 2^f = e^g with |g| < 0.3466, and what the series
/// leaves out is below g^10 / 10! x 1.04 = 7.2e-12, and relative to the
/// result below 1e-11: the error is largest where g > 0, and so is the result.
static inline double exp2(double z) {
    const double shifted = z + kRoundToInteger;
    const double g = (z - (shifted - kRoundToInteger)) * kLn2;
    const double g2 = g * g, g4 = g2 * g2;
    const double low = (1.0 + g) + g2 * (1.0 / 2 + g * (1.0 / 6));
    const double middle = (1.0 / 24 + g * (1.0 / 120)) + g2 * (1.0 / 720 + g * (1.0 / 5040));
    const double high = 1.0 / 40320 + g * (1.0 / 362880);
    const double series = low + g4 * (middle + g4 * high);
    const uint64_t scale = std::bit_cast<uint64_t>(shifted) << kFractionBits;
    return std::bit_cast<double>(std::bit_cast<uint64_t>(series) + scale);
}

/// v^exponent for 0 <= exponent <= 2^40, so that the integers of exp2 stay below 2^51; 0 for what
/// is not above 0, and the largest float at most.
static inline float power(float v, double exponent) {
    constexpr double kNothing = -151.0;           // 2^-151 rounds to 0 as a float
    constexpr double kTooMuch = 128.0 - 0x1p-23;  // from here on, 2^z rounds to kMost or above it
    constexpr double kMost = static_cast<double>(std::numeric_limits<float>::max());
    const double z = log2(static_cast<double>(positive(v))) * exponent;
    const double limited = select(atLeastMask(z, kTooMuch), kMost, exp2(z));
    const double result = select(atLeastMask(z, kNothing), limited, 0.0);
    return masked(positiveMask(v), static_cast<float>(result));
}

}  // namespace lumoxa::elementary
