// SPDX-License-Identifier: Apache-2.0
#include "gray/inverse_lut.h"

#include <cmath>
#include <cstdio>

#include "base/root_finder.h"
#include "gray/spline.h"

namespace lumoxa {
namespace {

constexpr float kHit = 1e-6f;  // of a value at either end: counts as the target itself
constexpr double kRelativeTolerance = 6e-8;  // twice the rounding error of a float
constexpr double kAbsoluteTolerance = 5e-6;

float toleranceAt(float x) {
    return static_cast<float>(kRelativeTolerance * std::fabs(static_cast<double>(x)) +
                              kAbsoluteTolerance);
}

}  // namespace

void get_inv_lut(float target, const float* x, const float* y, const float* y2, float lower,
                 float upper, float* result) {
    const auto excess = [&](float t) {
        float value = 0.0f;
        icSplineEval(x, y, y2, kInverseLutPoints, t, &value);
        return value - target;
    };
    const auto end = [&](float t) {
        const float value = excess(t);
        return RootSample{t, std::fabs(value) < kHit ? 0.0f : value};
    };
    if (!findRoot(excess, end(lower), end(upper), toleranceAt, *result)) {
        // The function has no result code: this is how callers hear of it.
        std::fputs("Maximum number of iterations exceeded in get_inv_lut.\n", stderr);
    }
}

}  // namespace lumoxa
