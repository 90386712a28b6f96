// SPDX-License-Identifier: Apache-2.0
//
// Splines and their inversion.
#include "gray/spline.h"

#include <cmath>

#include <gtest/gtest.h>

#include "gray/inverse_lut.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;
using Floats = std::vector<float>;

struct Curve {
    Floats x, y, y2;

    Curve(const Floats& xs, const Floats& ys) : x(xs), y(ys), y2(xs.size(), NAN) {
        EXPECT_EQ(icSplineBuild(x.data(), y.data(), count(), y2.data()), 0);
    }
    int count() const { return static_cast<int>(x.size()); }
    float at(float t) const {
        float value = NAN;
        icSplineEval(x.data(), y.data(), y2.data(), count(), t, &value);
        return value;
    }
};

class Splines : public testing::TestWithParam<size_t> {};

// Slopes that agree from both sides of each point, and no curvature at the ends, make a natural
// cubic spline; its second derivatives then say what it is between the points, and beyond.
TEST_P(Splines, AreNaturalCubics) {
    SeededRandom random(static_cast<uint32_t>(GetParam()));
    Floats x, y;
    for (size_t i = 0; i < GetParam(); ++i) {
        x.push_back((x.empty() ? -300.0f : x.back()) + 40.0f + random.upTo(200));
        y.push_back(random.upTo(1000));
    }
    const Curve curve(x, y), turned({x.rbegin(), x.rend()}, {y.rbegin(), y.rend()});
    const size_t last = x.size() - 1;
    const Floats& y2 = curve.y2;
    EXPECT_EQ(y2.front(), 0.0f);
    EXPECT_EQ(y2.back(), 0.0f);
    for (size_t i = 0; i < last; ++i) {
        const double h = double(x[i + 1]) - x[i], slope = (double(y[i + 1]) - y[i]) / h;
        if (i > 0) {
            const double before = double(x[i]) - x[i - 1];
            const double slopeBefore = (double(y[i]) - y[i - 1]) / before;
            EXPECT_NEAR(before * y2[i - 1] + 2 * (before + h) * y2[i] + h * y2[i + 1],
                        6 * (slope - slopeBefore), 0.02);
        }
        for (const double b : {i == 0 ? -0.3 : 0.0, 0.2, 0.5, i + 1 == last ? 1.3 : 1.0}) {
            const double a = 1 - b, bend = (a * a * a - a) * y2[i] + (b * b * b - b) * y2[i + 1];
            const auto t = static_cast<float>(x[i] + b * h);
            EXPECT_NEAR(curve.at(t), a * y[i] + b * y[i + 1] + bend * h * h / 6, 0.02) << t;
            EXPECT_NEAR(turned.at(t), curve.at(t), 0.02) << t;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Points, Splines, testing::Values(2, 3, 18, 257));

TEST(SplinesOnALine, StayStraight) {
    const Curve cubic({0, 1, 3, 4, 10}, {1, 3, 7, 9, 21});
    EXPECT_EQ(cubic.y2, Floats(5, 0.0f));
    for (const float t : {-4.0f, 0.25f, 2.0f, 9.5f, 15.0f})
        EXPECT_FLOAT_EQ(cubic.at(t), 1 + 2 * t);
    const Floats bent = {0, 5, 2, 8, 8};
    const Spline linear = Spline::piecewiseLinear(cubic.x.data(), bent.data(), 5);
    EXPECT_FLOAT_EQ(linear(0.5f), 2.5f);
    EXPECT_FLOAT_EQ(linear(7.0f), 8.0f);
}

class InverseLut : public testing::TestWithParam<std::pair<double, double>> {};

// A falling curve of some exponent, and what it ends at. Beyond its values there may be no root,
// which is said and leaves the result as it was.
TEST_P(InverseLut, FindsTheTarget) {
    const auto [exponent, end] = GetParam();
    Floats x, y;
    for (int i = 0; i < kInverseLutPoints; ++i) {
        const double t = i / (kInverseLutPoints - 1.0);
        x.push_back(static_cast<float>(65535 * t));
        y.push_back(static_cast<float>(end + (65280 - end) * std::pow(1 - t, exponent)));
    }
    const Curve curve(x, y);
    constexpr float kUntouched = -777.0f;
    const auto inverse = [&](float target, float upper) {
        float result = kUntouched;
        get_inv_lut(target, x.data(), y.data(), curve.y2.data(), x.front(), upper, &result);
        return result;
    };
    for (const float upper : {x.back(), 20000.0f}) {
        const float lowest = curve.at(upper);
        EXPECT_EQ(inverse(y.front(), upper), x.front());
        EXPECT_EQ(inverse(lowest, upper), upper);
        for (int i = 1; i < 200; ++i) {
            const float target = lowest + (y.front() - lowest) * static_cast<float>(i) / 200;
            // What the tolerance of the abscissa and single precision leave.
            EXPECT_NEAR(curve.at(inverse(target, upper)), target, 0.05f) << upper << " " << i;
        }
    }
    for (const auto& [target, upper] : {std::pair{-5000.0f, x.back()},
                                        {65281.0f, x.back()},
                                        {200000.0f, x.back()},
                                        {1000.0f, INFINITY}}) {
        testing::internal::CaptureStderr();
        const bool found = inverse(target, upper) != kUntouched;
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  found ? "" : "Maximum number of iterations exceeded in get_inv_lut.\n");
        EXPECT_FALSE(found && std::isinf(upper));
    }
}

INSTANTIATE_TEST_SUITE_P(Curves, InverseLut,
                         testing::Values(std::pair{1.0, 0.0}, std::pair{2.2, 0.0},
                                         std::pair{0.6, 12000.0}, std::pair{1.3, 65000.0}));

}  // namespace
}  // namespace lumoxa_test
