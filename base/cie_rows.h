// SPDX-License-Identifier: Apache-2.0
//
// CIE 15 on rows: XYZ to L*a*b* and back, for the D50 white of ICC.1:2010 (7.2.16). Computed in
// double and rounded to float once, with the same bits from every compiler and on every machine.
#pragma once

namespace lumoxa {

/// X, Y and Z of the white, relative to Y = 1.
inline constexpr float kWhiteX = 0.9642f;
inline constexpr float kWhiteY = 1.0f;
inline constexpr float kWhiteZ = 0.8249f;

/// Largest absolute error after labToXyz and xyzToLab, for L* of 0..100 and |a*|, |b*| up to 128.
/// XYZ in between are floats: 2^-24 of them is 2e-8 of a cube root up to 1.64, times 500 in a* or
/// 200 in b*, twice; and the result is rounded.
inline constexpr double kLabRoundTripMaxError = 3e-5;

/// Largest absolute error after xyzToLab and labToXyz, for X, Y and Z of 0..1. Half a unit in the
/// last place of L* is 3.3e-8 of a cube root, b* can add 3.8e-8, and a cube triples the sum.
inline constexpr double kXyzRoundTripMaxError = 3e-7;

/// Replaces rows of X, Y, Z by L*, a*, b*. The white becomes (100, 0, 0) exactly, black (0, 0, 0);
/// negative values follow the linear segment. What is not a number stays so; infinity counts as the
/// largest float. The rows are disjoint.
void xyzToLab(float* x, float* y, float* z, int count);

/// Replaces disjoint rows of L*, a*, b* by X, Y, Z, the inverse. What exceeds a float is infinite.
void labToXyz(float* lightness, float* a, float* b, int count);

}  // namespace lumoxa
