// SPDX-License-Identifier: Apache-2.0
#include "gray/shaping.h"

#include <algorithm>
#include <cmath>

namespace lumoxa {
namespace {

/// One end of the curve, measured from its end point: y = a u^3 + beta u up to the joint. Where a
/// direct cubic would have to start below the end point, the cubic gives u for y instead.
struct EndCubic {
    bool inverse;
    double joint;   // of u, where the line begins
    double extent;  // of the cubic's own variable
    double a, beta;

    double operator()(double u) const { return inverse ? solve(u) : polynomial(u); }

  private:
    double polynomial(double v) const { return a * v * v * v + beta * v; }

    /// y with polynomial(y) = u, by Newton's method.
    double solve(double u) const {
        constexpr int kMostSteps = 25;
        constexpr double kSmallStep = 1e-6;
        double y = extent / 2.0;
        for (int i = 0; i < kMostSteps; ++i) {
            const double slope = 3.0 * a * y * y + beta;
            const double next = std::clamp(y - (polynomial(y) - u) / slope, 0.0, extent);
            if (std::fabs(next - y) < kSmallStep) break;
            y = next;
        }
        return y;
    }
};

/// A cubic through the origin that meets the line of that slope through (0.5, middle).
EndCubic makeCubic(bool inverse, double slope, double middle) {
    // Three quarters of the way from the middle to the joint at which the cubic would start level.
    const double e = (0.75 - 1.5 * middle / slope - 0.5) * 0.75 + 0.5;
    const double atJoint = (e - 0.5) * slope + middle;
    const double beta = 1.5 * atJoint / e - slope / 2.0;
    return {inverse, inverse ? atJoint : e, e, 2.0 * (slope - beta) / (6.0 * e * e), beta};
}

EndCubic endCubic(double slope, double middle) {
    if (middle - slope / 2.0 < 0.0) return makeCubic(false, slope, middle);
    const double inverseSlope = 1.0 / slope;
    return makeCubic(true, inverseSlope, (0.5 - middle) * inverseSlope + 0.5);
}

}  // namespace

double shapedTone(double black, double t, double parameter) {
    const double k = parameter >= 0.0 ? 1.0 + parameter / 4.0 : 1.0 / (1.0 - parameter / 4.0);
    const double slope = k / (1.0 - black);
    const double middle = 1.0 - 0.5 / (1.0 - black);
    const EndCubic toe = endCubic(slope, middle);
    if (t < toe.joint) return toe(t);
    const double mirroredMiddle = 1.0 - middle;
    const EndCubic shoulder = endCubic(slope, mirroredMiddle);
    const double d = 1.0 - t;
    if (d > shoulder.joint) return 1.0 - mirroredMiddle - (d - 0.5) * slope;
    return 1.0 - shoulder(d);
}

}  // namespace lumoxa
