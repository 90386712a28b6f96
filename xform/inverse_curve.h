// SPDX-License-Identifier: Apache-2.0
//
// Inversion of a sampled curve by Brent's root-finding method (R. Brent, "Algorithms for
// Minimization without Derivatives", 1973, chapter 4), in single precision.
#pragma once

namespace lumoxa {

/// Finds the position x in 0 .. entries - 1 where the piecewise-linear curve through `table` has
/// the value y. Returns false, leaving x as it is, when the curve's ends do not bracket y or when
/// 100 steps do not converge.
bool findOnCurve(const float* table, int entries, float y, float& x);

/// Fills `inverse` with the inverse of `table` on the same number of entries, values on the scale
/// 0..65535. Where the search fails, the entry before is used again: the inverse stays flat beyond
/// the curve's own range.
void invertCurve(const float* table, int entries, float* inverse);

}  // namespace lumoxa
