// SPDX-License-Identifier: Apache-2.0
#include "gray/inverse_lut.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "gray/spline.h"

namespace lumoxa {
namespace {

constexpr int kMostIterations = 100;
constexpr float kHit = 1e-6f;  // of a value at either end: counts as the target itself
constexpr double kRelativeTolerance = 6e-8;  // twice the rounding error of a float
constexpr double kAbsoluteTolerance = 5e-6;

/// The bracket of Brent's method: `b` is the best estimate, `a` the one before, `c` the other end.
struct Bracket {
    float a, b, c;
    float fa, fb, fc;
    float d, e;  // the last step and the one before

    void keepRootBetweenBAndC() {
        if (!(fb * fc > 0.0f)) return;
        c = a;
        fc = fa;
        d = e = b - a;
    }
    void makeBTheBest() {
        if (!(std::fabs(fc) < std::fabs(fb))) return;
        a = b, b = c, c = a;
        fa = fb, fb = fc, fc = fa;
    }
    void bisect(float half) { d = e = half; }

    /// Inverse quadratic interpolation through three points, or the secant through two.
    void interpolate(float half, float tolerance) {
        const float s = fb / fa;
        float p = 2.0f * half * s;
        float q = 1.0f - s;
        if (a != c) {
            const float ratio = fa / fc;
            const float r = fb / fc;
            p = s * (2.0f * half * ratio * (ratio - r) - (b - a) * (r - 1.0f));
            q = (ratio - 1.0f) * (r - 1.0f) * (s - 1.0f);
        }
        if (p > 0.0f) q = -q;
        p = std::fabs(p);
        const float within = 3.0f * half * q - std::fabs(tolerance * q);
        if (2.0f * p < std::min(within, std::fabs(e * q))) {
            e = d;
            d = p / q;
        } else {
            bisect(half);
        }
    }
};

float snapped(float value) {
    return std::fabs(value) < kHit ? 0.0f : value;
}

}  // namespace

void get_inv_lut(float target, const float* x, const float* y, const float* y2, float lower,
                 float upper, float* result) {
    const auto excess = [&](float t) {
        float value = 0.0f;
        icSplineEval(x, y, y2, kInverseLutPoints, t, &value);
        return value - target;
    };
    Bracket s{lower, upper, upper, snapped(excess(lower)), snapped(excess(upper)), 0, 0, 0};
    s.fc = s.fb;
    for (int i = 0; i < kMostIterations; ++i) {
        s.keepRootBetweenBAndC();
        s.makeBTheBest();
        const auto tolerance = static_cast<float>(
            kRelativeTolerance * std::fabs(static_cast<double>(s.b)) + kAbsoluteTolerance);
        const float half = 0.5f * (s.c - s.b);
        if (std::fabs(half) <= tolerance || s.fb == 0.0f) {
            *result = s.b;
            return;
        }
        if (std::fabs(s.e) >= tolerance && std::fabs(s.fa) > std::fabs(s.fb)) {
            s.interpolate(half, tolerance);
        } else {
            s.bisect(half);
        }
        s.a = s.b;
        s.fa = s.fb;
        s.b += std::fabs(s.d) > tolerance ? s.d : half > 0.0f ? tolerance : -tolerance;
        s.fb = excess(s.b);
    }
    std::fputs("Maximum number of iterations exceeded in get_inv_lut.\n", stderr);
}

}  // namespace lumoxa
