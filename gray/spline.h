// SPDX-License-Identifier: Apache-2.0
//
// Natural cubic splines over a table of points: between two points a cubic, at each point the same
// slope and second derivative from both sides, at the ends no curvature. That is a tridiagonal
// system of equations for the second derivatives, solved by elimination (Thomas, 1949).
//
// Points and second derivatives are stored in single precision, quotients and the cubic are worked
// out in double: this fixes the results.
#pragma once

#include <vector>

namespace lumoxa {

/// Second derivatives of the natural spline through `n` points whose abscissae rise or fall
/// strictly. 0, or 1 without memory.
int icSplineBuild(const float* x, const float* y, int n, float* y2);

/// Value of a spline at `t`; outside the table, that of the first or last cubic.
void icSplineEval(const float* x, const float* y, const float* y2, int n, float t, float* result);

/// A spline over arrays that live elsewhere. Throws std::bad_alloc.
class Spline {
  public:
    Spline(const float* x, const float* y, int n);
    /// Without second derivatives: a chain of straight lines.
    static Spline piecewiseLinear(const float* x, const float* y, int n);

    float operator()(float t) const {
        float value = 0.0f;
        icSplineEval(x_, y_, y2_.data(), n_, t, &value);
        return value;
    }
    const float* secondDerivatives() const { return y2_.data(); }

  private:
    struct Linear {};
    Spline(const float* x, const float* y, int n, Linear);

    const float* x_;
    const float* y_;
    int n_;
    std::vector<float> y2_;
};

}  // namespace lumoxa
