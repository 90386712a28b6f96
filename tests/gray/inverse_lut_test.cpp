// SPDX-License-Identifier: Apache-2.0
#include "gray/inverse_lut.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "gray/spline.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;

constexpr float kUntouched = -777.0f;
constexpr const char* kMessage = "Maximum number of iterations exceeded in get_inv_lut.\n";

/// A falling curve of 18 points, of that exponent, from 65280 to `end`.
struct Curve {
    std::array<float, kInverseLutPoints> x{}, y{}, y2{};

    explicit Curve(double exponent, double end = 0) {
        for (size_t i = 0; i < x.size(); ++i) {
            const double t = static_cast<double>(i) / 17;
            x[i] = static_cast<float>(65535 * t);
            y[i] = static_cast<float>(end + (65280 - end) * std::pow(1 - t, exponent));
        }
        icSplineBuild(x.data(), y.data(), kInverseLutPoints, y2.data());
    }
    float at(float t) const {
        float value = NAN;
        icSplineEval(x.data(), y.data(), y2.data(), kInverseLutPoints, t, &value);
        return value;
    }
    float inverse(float target, float upper) const {
        float result = kUntouched;
        get_inv_lut(target, x.data(), y.data(), y2.data(), x.front(), upper, &result);
        return result;
    }
};

class InverseLut : public testing::TestWithParam<std::pair<double, double>> {};

TEST_P(InverseLut, MissesTheTarget) {
    const Curve curve(GetParam().first, GetParam().second);
    for (const float upper : {curve.x.back(), curve.x[11], 20000.0f}) {
        const float lowest = curve.at(upper);
        EXPECT_EQ(curve.inverse(curve.y.front(), upper), curve.x.front());
        EXPECT_EQ(curve.inverse(lowest, upper), upper);
        for (int i = 1; i < 200; ++i) {
            const float target = lowest + (curve.y.front() - lowest) * static_cast<float>(i) / 200;
            const float found = curve.inverse(target, upper);
            // What the tolerance of the abscissa and single precision leave.
            EXPECT_NEAR(curve.at(found), target, 0.05f) << upper << " " << i;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Curves, InverseLut,
                         testing::Values(std::pair{1.0, 0.0}, std::pair{2.2, 0.0},
                                         std::pair{0.6, 12000.0}, std::pair{1.3, 65000.0}));

TEST(InverseLut, SaysNothingOrWritesWhereNoRootIs) {
    // A step in the middle of so long an axis takes more halvings than there are iterations.
    Curve endless(1);
    endless.y2.fill(0);
    for (size_t i = 0; i < endless.x.size(); ++i) {
        const bool before = i < endless.x.size() / 2;
        const bool beside = i == endless.x.size() / 2 - 1 || i == endless.x.size() / 2;
        endless.x[i] = beside ? (before ? -1e-7f : 1e-7f)
                              : 1e29f * (static_cast<float>(i) - (before ? 9.0f : 8.0f));
        endless.y[i] = before ? 1 : -1;
    }
    testing::internal::CaptureStderr();
    const float missed = endless.inverse(0.25f, endless.x.back());
    EXPECT_EQ(testing::internal::GetCapturedStderr(), kMessage);
    EXPECT_EQ(missed, kUntouched);
    for (const double exponent : {1.0, 2.2, 0.6}) {
        const Curve curve(exponent, 3000);
        for (const float target : {-5000.0f, 0.0f, 2999.0f, 65281.0f, 200000.0f}) {
            testing::internal::CaptureStderr();
            const float result = curve.inverse(target, curve.x.back());
            const std::string said = testing::internal::GetCapturedStderr();
            EXPECT_EQ(said, result == kUntouched ? kMessage : "") << exponent << " " << target;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
