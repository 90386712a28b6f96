// SPDX-License-Identifier: Apache-2.0
#include "xform/inverse_curve.h"

#include <cmath>
#include <utility>

#include "lut/table_lookup.h"
#include "profile/pcs_encoding.h"

namespace lumoxa {
namespace {

constexpr int kMaxSteps = 100;
constexpr float kMachineEpsilon = 3e-8f;   // half of single precision's, as the method asks
constexpr float kHalfTolerance = 0.0005f;  // half of 0.001 table positions
constexpr float kEndIsRoot = 1e-6f;

/// The interpolation step from the three newest points, as a quotient p / q with p >= 0: inverse
/// quadratic, or the secant when only two of them differ.
std::pair<float, float> interpolationStep(float a, float c, float fa, float fb, float fc, float b,
                                          float half) {
    const float s = fb / fa;
    float p = 2.0f * half * s;
    float q = 1.0f - s;
    if (a != c) {
        const float t = fa / fc;
        const float r = fb / fc;
        p = s * (2.0f * half * t * (t - r) - (b - a) * (r - 1.0f));
        q = (t - 1.0f) * (r - 1.0f) * (s - 1.0f);
    }
    if (p > 0.0f) q = -q;
    return {std::fabs(p), q};
}

/// Root of `f` in [a, b]; where it does not change its sign, the end at which it is nearer to 0.
template <class Function>
bool brentRoot(const Function& f, float a, float b, float fa, float fb, float& root) {
    float c = b;
    float fc = fb;
    float step = b - a;
    float previousStep = step;
    for (int i = 0; i < kMaxSteps; ++i) {
        if ((fb > 0.0f && fc > 0.0f) || (fb < 0.0f && fc < 0.0f)) {
            c = a;  // the root lies between b, the best point, and c
            fc = fa;
            previousStep = step = b - a;
        }
        if (std::fabs(fc) < std::fabs(fb)) {
            a = b;
            b = c;
            c = a;
            fa = fb;
            fb = fc;
            fc = fa;
        }
        const float tolerance = 2.0f * kMachineEpsilon * std::fabs(b) + kHalfTolerance;
        const float half = 0.5f * (c - b);
        if (std::fabs(half) <= tolerance || fb == 0.0f) {
            root = b;
            return true;
        }
        bool bisect = true;
        if (std::fabs(previousStep) >= tolerance && std::fabs(fa) > std::fabs(fb)) {
            const auto [p, q] = interpolationStep(a, c, fa, fb, fc, b, half);
            const float inBracket = 3.0f * half * q - std::fabs(tolerance * q);
            if (2.0f * p < std::fmin(inBracket, std::fabs(previousStep * q))) {
                previousStep = step;
                step = p / q;
                bisect = false;
            }
        }
        if (bisect) previousStep = step = half;
        a = b;
        fa = fb;
        b += std::fabs(step) > tolerance ? step : std::copysign(tolerance, half);
        fb = f(b);
    }
    return false;
}

}  // namespace

bool findOnCurve(const float* table, int entries, float y, float& x) {
    const auto difference = [&](float at) { return lookUp(table, entries - 2, at) - y; };
    const auto atEnd = [&](float at) {
        const float value = difference(at);
        return std::fabs(value) < kEndIsRoot ? 0.0f : value;
    };
    const float last = static_cast<float>(entries - 1);
    return brentRoot(difference, 0.0f, last, atEnd(0.0f), atEnd(last), x);
}

void invertCurve(const float* table, int entries, float* inverse) {
    float x = 0.0f;
    const auto last = static_cast<float>(entries - 1);
    for (int i = 0; i < entries; ++i) {
        findOnCurve(table, entries, static_cast<float>(i) * kSampleMax16 / last, x);
        inverse[i] = x * kSampleMax16 / last;
    }
}

}  // namespace lumoxa
