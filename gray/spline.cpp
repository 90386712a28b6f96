// SPDX-License-Identifier: Apache-2.0
#include "gray/spline.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <new>

namespace lumoxa {

namespace {

/// Slope of the straight line from point i to the next.
float slopeAfter(const float* x, const float* y, int i) {
    return (y[i + 1] - y[i]) / (x[i + 1] - x[i]);
}

/// Row i of the system: share m[i-1] + 2 m[i] + (1 - share) m[i+1] = 6 x the change of slope /
/// span, m being the second derivatives.
struct SystemRow {
    double share;  // of the span: what lies before the point
    double rightSide;
};

SystemRow systemRow(const float* x, const float* y, int i) {
    const double share = (x[i] - x[i - 1]) / (x[i + 1] - x[i - 1]);
    const double span = x[i + 1] - x[i - 1];
    const float bend = slopeAfter(x, y, i) - slopeAfter(x, y, i - 1);
    return {share, 6.0 * bend / span};
}

/// Index of the point at either end of the interval in which `t` lies.
struct Interval {
    int low, high;
};

Interval intervalOf(const float* x, int n, float t) {
    const bool falling = x[0] > x[n - 1];
    Interval found{falling ? n - 1 : 0, falling ? 0 : n - 1};
    while (std::abs(found.high - found.low) > 1) {
        const int middle = (found.low + found.high) >> 1;
        (x[middle] > t ? found.high : found.low) = middle;
    }
    return found;
}

}  // namespace

int icSplineBuild(const float* x, const float* y, int n, float* y2) {
    if (n < 2) {
        std::fill_n(y2, std::max(n, 0), 0.0f);
        return 0;
    }
    const std::unique_ptr<double[]> scratch(new (std::nothrow) double[static_cast<size_t>(n)]);
    double* const constants = scratch.get();
    if (constants == nullptr) return 1;
    // On the way up, each row is freed of the derivative before: what remains is
    // m[i] = y2[i] m[i+1] + constants[i]. The first row says that the natural spline starts
    // straight.
    y2[0] = 0.0f;
    constants[0] = 0.0;
    for (int i = 1; i < n - 1; ++i) {
        const SystemRow row = systemRow(x, y, i);
        const double pivot = row.share * y2[i - 1] + 2.0;
        y2[i] = static_cast<float>((row.share - 1.0) / pivot);
        constants[i] = (row.rightSide - row.share * constants[i - 1]) / pivot;
    }
    // It ends straight, too: zero, unless a value above is not finite.
    y2[n - 1] = static_cast<float>((0.0 - 0.0 * constants[n - 2]) / (0.0 * y2[n - 2] + 1.0));
    for (int i = n - 2; i >= 0; --i)
        y2[i] = static_cast<float>(static_cast<double>(y2[i]) * y2[i + 1] + constants[i]);
    return 0;
}

void icSplineEval(const float* x, const float* y, const float* y2, int n, float t, float* result) {
    if (n < 2) {
        if (n == 1) *result = y[0];
        return;
    }
    const auto [low, high] = intervalOf(x, n, t);
    const double width = x[high] - x[low];
    const double toHigh = (static_cast<double>(x[high]) - t) / width;  // shares of the interval
    const double fromLow = (static_cast<double>(t) - x[low]) / width;
    const double bend = (fromLow * fromLow * fromLow - fromLow) * y2[high] +
                        (toHigh * toHigh * toHigh - toHigh) * y2[low];
    const double chord = y[low] * toHigh + y[high] * fromLow;
    *result = static_cast<float>(bend * (width * width) / 6.0 + chord);
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
