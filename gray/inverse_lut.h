// SPDX-License-Identifier: Apache-2.0
//
// The abscissa at which a tone curve takes a value.
#pragma once

namespace lumoxa {

/// Points of the splines that get_inv_lut() takes: paper, 16 tone steps, black.
inline constexpr int kInverseLutPoints = 18;

/// Finds where the spline of kInverseLutPoints points takes the value `target` between `lower` and
/// `upper`, by Brent's root-finding method, and writes it.
///
/// The root need not lie between the ends. When 100 steps don't find one, a line says so on the
/// standard error stream and the result is left as it is: a table builder that keeps one result
/// slot repeats the entry before.
void get_inv_lut(float target, const float* x, const float* y, const float* y2, float lower,
                 float upper, float* result);

}  // namespace lumoxa
