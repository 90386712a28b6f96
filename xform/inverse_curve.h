// SPDX-License-Identifier: Apache-2.0
//
// Inversion of a sampled curve by Brent's root-finding method (R. Brent, "Algorithms for
// Minimization without Derivatives", 1973, chapter 4), in single precision.
#pragma once

namespace lumoxa {

/// Finds the position x in 0 .. entries - 1 where the piecewise-linear curve through `table` has
/// the value y; for a y beyond the curve's range, the nearer end. Returns false, leaving x as it
/// is, when 100 steps do not converge.
bool findOnCurve(const float* table, int entries, float y, float& x);

/// Fills `inverse` with the inverse of `table` on the same number of entries, values on the scale
/// 0..65535. Where the search does not converge, the entry before is used again.
void invertCurve(const float* table, int entries, float* inverse);

}  // namespace lumoxa
