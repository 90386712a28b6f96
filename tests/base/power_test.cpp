// SPDX-License-Identifier: Apache-2.0
#include "base/power.h"

#include <cfloat>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using lumoxa::power;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

// Some C libraries have no long double, and those for Windows hardly more than double in powl.
#if LDBL_MANT_DIG >= 64 && !defined(_WIN32)
constexpr bool kPowlIsExact = true;
#else
constexpr bool kPowlIsExact = false;
#endif

// Half a unit is what rounding takes.
TEST(Power, IsExactToAHundredthBesideRounding) {
    if (!kPowlIsExact) GTEST_SKIP() << "powl is hardly more exact than pow here";
    const struct {
        double leastLog2X, mostLog2X;
        double mostLog2Result;  // 0: y is an exponent of 0..4
    } ranges[] = {{-16, 0, 0}, {-0.001, 0.001, 1}, {-1000, 1000, 64}, {-1000, 1000, 1000}};
    SeededRandom random(7);
    const auto share = [&] { return (random.upTo(65535) + random.upTo(65535) / 65536.0) / 65536; };
    for (const auto& range : ranges) {
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
        EXPECT_LT(worst, 0.51) << range.leastLog2X;
        EXPECT_GT(worst, 0.49) << "the check sees no error at all";
    }
}

// ISO C, F.10.4.4; std::pow has the same cases.
TEST(Power, TreatsSpecialNumbersAsC) {
    const double tiny = std::numeric_limits<double>::denorm_min(), odd = 9007199254740991.0;
    for (const double x : {0.0, 1.0, 2.0, 0.5, 1 + DBL_EPSILON, DBL_MAX, tiny, kInfinity, kNaN}) {
        for (const double y :
             {0.0, 2.0, 3.0, 0.5, 1074.0, 1075.0, DBL_MAX, DBL_MIN, odd, kInfinity, kNaN}) {
            for (const auto& [base, exponent] : {std::pair{x, y}, {-x, y}, {x, -y}, {-x, -y}}) {
                const double expected = std::pow(base, exponent), actual = power(base, exponent);
                EXPECT_EQ(std::isnan(actual), std::isnan(expected)) << base << "^" << exponent;
                if (std::isnan(expected)) continue;
                EXPECT_DOUBLE_EQ(actual, expected) << base << "^" << exponent;
                EXPECT_EQ(std::signbit(actual), std::signbit(expected)) << base << "^" << exponent;
            }
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
