// SPDX-License-Identifier: Apache-2.0
#include "gray/spline.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

namespace lumoxa {

int icSplineBuild(const float* x, const float* y, int n, float* y2) {
    if (n < 2) {
        std::fill_n(y2, std::max(n, 0), 0.0f);
        return 0;
    }
    const std::unique_ptr<double[]> scratch(new (std::nothrow) double[static_cast<size_t>(n)]);
    double* const u = scratch.get();
    if (u == nullptr) return 1;
    y2[0] = 0.0f;
    u[0] = 0.0;
    for (int i = 1; i < n - 1; ++i) {
        const double span = x[i + 1] - x[i - 1];
        const double sig = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
        const double p = sig * y2[i - 1] + 2.0;
        y2[i] = static_cast<float>((sig - 1.0) / p);
        const float bend =
            (y[i + 1] - y[i]) / (x[i + 1] - x[i]) - (y[i] - y[i - 1]) / (x[i] - x[i - 1]);
        u[i] = (6.0 * bend / span - sig * u[i - 1]) / p;
    }
    // The natural end: zero, unless a value above is not finite.
    y2[n - 1] = static_cast<float>((0.0 - 0.0 * u[n - 2]) / (0.0 * y2[n - 2] + 1.0));
    for (int k = n - 2; k >= 0; --k) {
        y2[k] = static_cast<float>(static_cast<double>(y2[k]) * y2[k + 1] + u[k]);
    }
    return 0;
}

void icSplineEval(const float* x, const float* y, const float* y2, int n, float t, float* result) {
    if (n < 2) {
        if (n == 1) *result = y[0];
        return;
    }
    const bool descending = x[0] > x[n - 1];
    int lo = descending ? n - 1 : 0;
    int hi = descending ? 0 : n - 1;
    while (std::abs(hi - lo) > 1) {
        const int middle = (lo + hi) >> 1;
        (x[middle] > t ? hi : lo) = middle;
    }
    const double h = x[hi] - x[lo];
    const double a = (static_cast<double>(x[hi]) - t) / h;
    const double b = (static_cast<double>(t) - x[lo]) / h;
    const double bent = (b * b * b - b) * y2[hi] + (a * a * a - a) * y2[lo];
    *result = static_cast<float>(bent * (h * h) / 6.0 + (y[lo] * a + y[hi] * b));
}

Spline::Spline(const float* x, const float* y, int n, Linear)
    : x_(x), y_(y), n_(n), y2_(static_cast<size_t>(std::max(n, 0))) {}

Spline::Spline(const float* x, const float* y, int n) : Spline(x, y, n, Linear{}) {
    if (icSplineBuild(x, y, n, y2_.data()) != 0) throw std::bad_alloc();
}

Spline Spline::piecewiseLinear(const float* x, const float* y, int n) {
    return {x, y, n, Linear{}};
}

}  // namespace lumoxa
