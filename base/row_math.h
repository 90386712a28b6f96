// SPDX-License-Identifier: Apache-2.0
//
// Elementary functions on rows of floats, for the exact form of a conversion. The error exceeds
// that of rounding to float by less than a hundredth, the bits are the same from every compiler and
// on every machine, and vector code does the work; base/power.h is the measure, and makes tables.
//
// An element's result depends on that element alone: a row gives what its elements give one by one.
#pragma once

namespace lumoxa {

/// Largest relative error of cubeRoots: the rounding to float, 2^-24, and 1e-14 of the arithmetic.
inline constexpr double kCubeRootMaxError = 0x1p-24 + 1e-14;

/// Largest relative error of powers where the result is a normal float and the exponent at most 20:
/// the rounding to float, the error of the logarithm (3e-11) times 20 ln 2, and 1e-11 of the
/// exponential. With a larger exponent the second part grows in proportion.
inline constexpr double kPowerMaxError = 0x1p-24 + 4.3e-10;

/// Replaces each element of `row` by its cube root. What is negative or not a number becomes 0;
/// infinity counts as the largest float.
void cubeRoots(float* row, int count);

/// Raises each element of `row` to the power `exponent`, which has to be above 0. 1 stays exactly
/// 1. What is negative or not a number becomes 0; infinity counts as the largest float, and so does
/// a result that exceeds it.
void powers(float* row, int count, float exponent);

/// The same functions of one number, with the same bits.
float cubeRoot(float x);
float fastPower(float x, float exponent);

}  // namespace lumoxa
