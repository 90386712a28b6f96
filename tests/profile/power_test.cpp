// SPDX-License-Identifier: Apache-2.0
#include "profile/power.h"

#include <cfloat>
#include <cmath>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using lumoxa::power;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// What y is to be for a base x, from `least` to `most` in one of four ways.
struct PowerRange {
    const char* name;
    double leastLog2X, mostLog2X;
    double mostLog2Result;  // 0: y is an exponent of 0..4
};

// Some C libraries have no long double, and those for Windows hardly more than double in powl.
#if LDBL_MANT_DIG >= 64 && !defined(_WIN32)
constexpr bool kPowlIsExact = true;
#else
constexpr bool kPowlIsExact = false;
#endif

class PowerError : public testing::TestWithParam<PowerRange> {};

// Half a unit is what rounding takes.
TEST_P(PowerError, ExceedsAHundredthMoreThanRounding) {
    if (!kPowlIsExact) GTEST_SKIP() << "powl is hardly more exact than pow here";
    const PowerRange& range = GetParam();
    SeededRandom random(7);
    const auto share = [&] { return (random.upTo(65535) + random.upTo(65535) / 65536.0) / 65536; };
    double worst = 0;
    for (int i = 0; i < 200000; ++i) {
        const double log2X = range.leastLog2X + (range.mostLog2X - range.leastLog2X) * share();
        const double x = std::exp2(log2X);
        const double reach = range.mostLog2Result / std::fabs(log2X);
        const double y = range.mostLog2Result == 0 ? 4 * share() : (2 * share() - 1) * reach;
        const long double exact = std::pow(static_cast<long double>(x), y);
        const long double unit = std::ldexp(1.0L, std::ilogb(exact) - (DBL_MANT_DIG - 1));
        worst = std::fmax(worst, static_cast<double>(std::fabs(power(x, y) - exact) / unit));
    }
    RecordProperty("units_in_the_last_place", std::to_string(worst));
    EXPECT_LT(worst, 0.51);
    EXPECT_GT(worst, 0.49) << "the check sees no error at all";
}

INSTANTIATE_TEST_SUITE_P(Ranges, PowerError,
                         testing::Values(PowerRange{"gammas", -16, 0, 0},
                                         PowerRange{"aroundOne", -0.001, 0.001, 1},
                                         PowerRange{"large", -1000, 1000, 64},
                                         PowerRange{"whole", -1000, 1000, 1000}),
                         [](const auto& info) { return info.param.name; });

TEST(Power, MissesExactResults) {
    for (int n = -1074; n < 1024; ++n)
        ASSERT_EQ(power(2.0, n), std::ldexp(1.0, n)) << n;
    for (int i = 1; i <= 65535; i += 3) {
        const double x = i;
        ASSERT_EQ(power(x, 1.0), x);
        ASSERT_EQ(power(x, 2.0), x * x);
        ASSERT_EQ(power(x, 3.0), x * x * x);
        ASSERT_EQ(power(x * x, 0.5), x);
        ASSERT_EQ(power(static_cast<float>(i), 0.5f), std::sqrt(static_cast<float>(i)));
    }
}

// ISO C, F.10.4.4; std::pow has the same cases.
TEST(Power, TreatsSpecialNumbersOtherwiseThanC) {
    const double tiny = std::numeric_limits<double>::denorm_min();
    const double bases[] = {0.0, 1, 2, 0.5, 3, 1 + DBL_EPSILON, DBL_MAX, tiny, kInfinity, kNaN};
    const double exponents[] = {0.0,  1,    2,       3,         2.5,     0.5,  1023,
                                1074, 1075, DBL_MAX, kInfinity, DBL_MIN, kNaN, 9007199254740991.0};
    const auto compare = [](double x, double y) {
        const double expected = std::pow(x, y), actual = power(x, y);
        if (std::isnan(expected)) {
            EXPECT_TRUE(std::isnan(actual)) << x << "^" << y;
        } else {
            EXPECT_DOUBLE_EQ(actual, expected) << x << "^" << y;
            EXPECT_EQ(std::signbit(actual), std::signbit(expected)) << x << "^" << y;
        }
    };
    for (const double x : bases) {
        for (const double y : exponents) {
            for (const double xSign : {x, -x}) {
                compare(xSign, y);
                compare(xSign, -y);
            }
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
