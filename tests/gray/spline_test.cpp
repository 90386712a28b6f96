// SPDX-License-Identifier: Apache-2.0
#include "gray/spline.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;
using Floats = std::vector<float>;

/// The tridiagonal system of the natural spline, by elimination in double precision.
std::vector<double> referenceSeconds(const Floats& x, const Floats& y) {
    const size_t n = x.size();
    std::vector<double> diagonal(n, 1), upper(n, 0), right(n, 0);
    for (size_t i = 1; i + 1 < n; ++i) {
        const double h0 = double(x[i]) - x[i - 1], h1 = double(x[i + 1]) - x[i];
        const double factor = h0 / diagonal[i - 1];
        diagonal[i] = 2 * (h0 + h1) - factor * upper[i - 1];
        upper[i] = h1;
        right[i] = 6 * ((double(y[i + 1]) - y[i]) / h1 - (double(y[i]) - y[i - 1]) / h0) -
                   factor * right[i - 1];
    }
    std::vector<double> y2(n, 0);
    for (size_t i = n - 2; i > 0; --i)
        y2[i] = (right[i] - upper[i] * y2[i + 1]) / diagonal[i];
    return y2;
}

double referenceValue(const Floats& x, const Floats& y, const std::vector<double>& y2, double t) {
    size_t i = 1;
    while (i + 1 < x.size() && t >= x[i])
        ++i;
    const double h = double(x[i]) - x[i - 1], s = t - x[i - 1];
    const double slope = (double(y[i]) - y[i - 1]) / h - h * (2 * y2[i - 1] + y2[i]) / 6;
    return y[i - 1] + s * (slope + s * (y2[i - 1] / 2 + s * (y2[i] - y2[i - 1]) / (6 * h)));
}

class Splines : public testing::TestWithParam<size_t> {};

TEST_P(Splines, LeaveTheNaturalCubic) {
    SeededRandom random(static_cast<uint32_t>(GetParam()));
    Floats x, y;
    for (size_t i = 0; i < GetParam(); ++i) {
        x.push_back((x.empty() ? -300.0f : x.back()) + 40.0f + random.upTo(200));
        y.push_back(random.upTo(1000));
    }
    const int n = static_cast<int>(x.size());
    Floats y2(x.size(), NAN);
    ASSERT_EQ(icSplineBuild(x.data(), y.data(), n, y2.data()), 0);
    EXPECT_EQ(y2.front(), 0.0f);
    EXPECT_EQ(y2.back(), 0.0f);
    const std::vector<double> expected = referenceSeconds(x, y);
    for (size_t i = 0; i < x.size(); ++i)
        EXPECT_NEAR(y2[i], expected[i], 1e-5) << i;

    const auto at = [n](const Floats& xs, const Floats& ys, const Floats& seconds, float t) {
        float value = NAN;
        icSplineEval(xs.data(), ys.data(), seconds.data(), n, t, &value);
        return value;
    };
    const Floats backX(x.rbegin(), x.rend()), backY(y.rbegin(), y.rend());
    Floats backY2(x.size(), NAN);
    icSplineBuild(backX.data(), backY.data(), n, backY2.data());
    for (size_t i = 0; i < x.size(); ++i) {
        EXPECT_EQ(at(x, y, y2, x[i]), y[i]);
        EXPECT_EQ(at(backX, backY, backY2, x[i]), y[i]);
    }
    const float beyond = 30.0f;  // on the first and the last cubic
    for (int i = 0; x.front() + 7.3f * static_cast<float>(i) < x.back() + 2 * beyond; ++i) {
        const float t = x.front() - beyond + 7.3f * static_cast<float>(i);
        const double value = referenceValue(x, y, expected, t);
        EXPECT_NEAR(at(x, y, y2, t), value, 0.01) << t;
        EXPECT_NEAR(at(backX, backY, backY2, t), value, 0.01) << t;
    }
}

INSTANTIATE_TEST_SUITE_P(Points, Splines, testing::Values(2, 3, 4, 18, 257));

TEST(SplinesOnALine, Bend) {
    const Floats x = {0, 1, 3, 4, 10}, y = {1, 3, 7, 9, 21};
    const Spline cubic(x.data(), y.data(), 5);
    const Floats bent = {0, 5, 2, 8, 8};
    const Spline linear = Spline::piecewiseLinear(x.data(), bent.data(), 5);
    for (size_t i = 0; i < x.size(); ++i)
        EXPECT_EQ(cubic.secondDerivatives()[i], 0.0f);
    for (const float t : {-4.0f, 0.25f, 2.0f, 9.5f, 15.0f})
        EXPECT_FLOAT_EQ(cubic(t), 1 + 2 * t);
    EXPECT_FLOAT_EQ(linear(0.5f), 2.5f);
    EXPECT_FLOAT_EQ(linear(2.0f), 3.5f);
    EXPECT_FLOAT_EQ(linear(7.0f), 8.0f);
}

}  // namespace
}  // namespace lumoxa_test
