// SPDX-License-Identifier: Apache-2.0
//
// Minimisers: of a spline along a line, and of any function of few variables.
#pragma once

namespace lumoxa {

/// Abscissa and value of a spline's minimum by Brent's method ("Algorithms for Minimization without
/// Derivatives", 1973, chapter 5): parabolas, with golden sections where they fail. `b` lies
/// between `a` and `c`, lower than both. Ends quietly after 100 steps.
float icSplineMinimize(float a, float b, float c, const float* x, const float* y, const float* y2,
                       int n, float tolerance, float* abscissa);

/// A function of `ndim` variables whose values are errors, none negative.
using SimplexObjective = double (*)(const double* point, void* context);

/// Moves a simplex of ndim + 1 vertices downhill (J. A. Nelder and R. Mead, "A simplex method for
/// function minimization", Computer Journal 7, 1965) until its values lie within `ftol` of one
/// another, relatively, or all below the square of it. `values` are those of the vertices on entry
/// and on return, `evaluations` counts the calls of the objective.
///
/// @return the index of the best vertex, or -1 when 500 evaluations were not enough; the vertices
///         are usable then too. Throws std::bad_alloc.
int icSimplexMinimize(double** vertices, double* values, int ndim, double ftol,
                      SimplexObjective objective, int* evaluations, void* context);

}  // namespace lumoxa
