// SPDX-License-Identifier: Apache-2.0
#include "convert/black_point.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "profile/signatures.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;
using namespace lumoxa::engine;

using Floats = std::vector<float>;

/// Converts colour by colour with `one`, which gets a colour and fills another.
template <class One>
BlackPointProbe::Conversion each(int from, int to, One one) {
    return [=](const float* source, float* destination, int count) {
        for (int i = 0; i < count; ++i)
            one(source + i * from, destination + i * to);
    };
}

struct ShadowCase {
    const char* name;
    icRenderingIntent intent;
    double initial;           // L* of the darkest colorant
    double (*out)(double L);  // the round trip
    double expected;
    const char* origin;

    friend void PrintTo(const ShadowCase& shadow, std::ostream* out) { *out << shadow.name; }
};

/// An RGB printer of that round trip; the darker end of its space has a chroma.
BlackPointProbe printer(const ShadowCase& c) {
    BlackPointProbe probe;
    probe.colorSpace = kSpaceRgb, probe.channels = 3, probe.hasLuts = true;
    probe.toLab = each(3, 3, [L = c.initial](const float* rgb, float* lab) {
        lab[0] = static_cast<float>(rgb[0] > 0 ? 100 : L), lab[1] = 70, lab[2] = -30;
    });
    probe.toDevice = each(3, 3, [out = c.out](const float* lab, float* rgb) {
        std::fill_n(rgb, 3, static_cast<float>(out(static_cast<double>(lab[0])) / 100));
    });
    probe.toLabColorimetric = each(
        3, 3, [](const float* rgb, float* lab) { lab[0] = 100 * rgb[0], lab[1] = 3, lab[2] = 4; });
    return probe;
}

double risenTo(double black, double y) {
    return black + (100 - black) * y;
}
double clip(double L) {
    return std::max(L, 20.0);
}
double compensated(double L) {
    return risenTo(20, L / 100);
}
// Parabolas through (12, 0) and (100, 1), (15, 0) and (100, 1).
double convex(double L) {
    return risenTo(10, std::max(0.0, (L - 12) * (L + 100) / (88 * 200)));
}
double concave(double L) {
    return risenTo(10, std::max(0.0, (L - 15) * (300 - L) / (85 * 200)));
}
template <int Count>  // points between the ends, in line with the 100th, which is a zero
double slope(double L) {
    const double steps = std::round(L * 2.55) - 99;
    return steps > Count ? 100 : 5 * std::max(steps, 0.0);
}
double level(double L) {
    if (L >= 60) return 100;
    return L < 30 ? 10 : 19;
}
template <int Off>
double liftedLights(double L) {
    return L > 80 && L < 100 ? L - Off : clip(L);
}

class Shadows : public testing::TestWithParam<ShadowCase> {};

TEST_P(Shadows, GiveTheBlackOfTheClosedForm) {
    const ShadowCase& c = GetParam();
    const BlackPoint black = destinationBlackPoint(printer(c), c.intent);
    EXPECT_NEAR(black.L, c.expected, 0.001);
    EXPECT_STREQ(black.origin, c.origin);
}

constexpr auto kPer = icPerceptual, kRel = icRelativeColorimetric, kSat = icSaturation;

INSTANTIATE_TEST_SUITE_P(
    BlackPoint, Shadows,
    testing::Values(
        ShadowCase{"clipped_relative", kRel, 23, clip, 23, kDarkestColorant},
        ShadowCase{"clipped_perceptual", kPer, 23, clip, 20, kFittedShadows},
        ShadowCase{"clipped_saturation", kSat, 23, clip, 20, kFittedShadows},
        ShadowCase{"crushed_relative", kRel, 23, [](double L) { return L < 35 ? 20 : L; }, 23,
                   kDarkestColorant},
        ShadowCase{"bent_above_the_shadows", kPer, 23,
                   [](double L) { return L < 39.9 ? clip(L) : std::min(100.0, L + 20); }, 20,
                   kFittedShadows},
        ShadowCase{"midtones_3_off", kRel, 23, liftedLights<3>, 23, kDarkestColorant},
        ShadowCase{"midtones_5_off", kRel, 23, liftedLights<5>, 20, kFittedShadows},
        ShadowCase{"compensated_relative", kRel, 20, compensated, 0, kFittedShadows},
        ShadowCase{"compensated_perceptual", kPer, 20, compensated, 0, kFittedShadows},
        ShadowCase{"convex_perceptual", kPer, 20, convex, 12, kFittedShadows},
        ShadowCase{"convex_relative", kRel, 20, convex, 12, kFittedShadows},
        ShadowCase{"concave_saturation", kSat, 20, concave, 15, kFittedShadows},
        ShadowCase{"foot_below_the_relative_range", kRel, 20,
                   [](double L) { return L > 0 ? std::max(convex(L), risenTo(10, 0.09)) : 10; }, 12,
                   kFittedShadows},
        ShadowCase{"foot_below_the_perceptual_range", kPer, 20,
                   [](double L) { return L > 0 ? std::max(convex(L), risenTo(10, 0.02)) : 10; }, 12,
                   kFittedShadows},
        ShadowCase{"foot_that_falls", kPer, 20,
                   [](double L) { return L < 20 ? 60 - 2 * L : clip(L); }, 20, kFittedShadows},
        ShadowCase{"flat", kPer, 20, [](double) { return 40.0; }, 0, kNoBlackInTables},
        ShadowCase{"upside_down", kRel, 20, [](double L) { return 100 - L; }, 0, kNoBlackInTables},
        ShadowCase{"three_points", kPer, 20, slope<3>, 9900 / 255.0, kFittedShadows},
        ShadowCase{"two_points", kPer, 20, slope<2>, 0, kNoBlackInTables},
        ShadowCase{"level_points", kPer, 20, level, 0, kNoBlackInTables},
        ShadowCase{"parabola_above_zero", kPer, 20,
                   [](double L) { return L > 0 ? 5 + 95 * L * L / 10000 : 0; }, 0,
                   kNoBlackInTables},
        ShadowCase{"zero_below_black", kPer, 20,
                   [](double L) { return L > 0 ? (L + 20) / 1.2 : 0; }, 0, kFittedShadows},
        ShadowCase{"light_black_fitted", kPer, 20, [](double L) { return std::max(L, 70.0); }, 50,
                   kFittedShadows},
        ShadowCase{"light_black_clipped", kRel, 70, [](double L) { return std::max(L, 70.0); }, 50,
                   kDarkestColorant}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(BlackPoint, RampStartsAtTheBlackAndFadesToWhite) {
    for (const icRenderingIntent intent : {kPer, kRel}) {
        BlackPointProbe probe = printer({"", intent, 20, clip, 0, ""});
        Floats ramp;
        probe.toDevice = [&](const float* lab, float* rgb, int count) {
            ramp.assign(lab, lab + 3 * count);
            std::fill_n(rgb, 3 * count, 0.0f);
        };
        destinationBlackPoint(probe, intent);
        ASSERT_EQ(ramp.size(), 768u);
        const Floats ends = {ramp[0], ramp[1], ramp[2], ramp[765], ramp[766], ramp[767]};
        const Floats chromatic = {0, 50, -30, 100, 0, 0}, neutral = {0, 0, 0, 100, 0, 0};
        EXPECT_EQ(ends, intent == kRel ? chromatic : neutral);
    }
}

/// A profile without LUTs, in which nothing is as dark as one colorant.
BlackPointProbe darkAt(uint32_t space, const Floats& colorant) {
    BlackPointProbe probe;
    probe.colorSpace = space, probe.channels = static_cast<int>(colorant.size());
    probe.toLab = each(probe.channels, 3, [=](const float* device, float* lab) {
        const bool dark = std::equal(colorant.begin(), colorant.end(), device);
        lab[0] = dark ? 10.0f : 30.0f, lab[1] = lab[2] = 5;
    });
    return probe;
}

TEST(BlackPoint, IsTheDarkestColorantOfTheSpace) {
    const struct {
        const char (&space)[5];
        std::vector<Floats> candidates;
    } rows[] = {{"GRAY", {{0}, {1}}},
                {"RGB ", {{0, 0, 0}, {1, 1, 1}}},
                {"YCbr", {{0, 0.5f, 0.5f}}},
                {"CMYK", {{0, 0, 0, 0}, {1, 1, 1, 1}, {0, 0, 0, 1}, {1, 1, 1, 0}}},
                {"6CLR", {Floats(6, 0), Floats(6, 1)}}};
    for (const auto& row : rows) {
        for (const Floats& colorant : row.candidates) {
            const BlackPointProbe probe = darkAt(fourcc(row.space), colorant);
            EXPECT_EQ(sourceBlackPoint(probe).L, 10) << row.space;
            EXPECT_EQ(destinationBlackPoint(probe, kPer).L, 10) << row.space;
        }
    }
}

TEST(BlackPoint, OfCmykIsWherePerceptualBlackGoes) {
    const Floats ink = {0.7f, 0.6f, 0.5f, 0.9f};
    BlackPointProbe probe = darkAt(kSpaceCmyk, ink);
    EXPECT_EQ(sourceBlackPoint(probe).L, 30);
    probe.toDevicePerceptual = each(3, 4, [=](const float* lab, float* device) {
        EXPECT_EQ(Floats(lab, lab + 3), Floats(3, 0));
        std::copy(ink.begin(), ink.end(), device);
    });
    EXPECT_EQ(sourceBlackPoint(probe).L, 10);
    EXPECT_STREQ(sourceBlackPoint(probe).origin, kPerceptualBlack);
}

TEST(BlackPoint, StaysInRangeWhateverTheTablesHold) {
    using Limits = std::numeric_limits<float>;
    const float hostile[] = {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(),
                             Limits::max(), -Limits::max()};
    for (int mask = 1; mask < 32; ++mask) {  // which of the values come back, in turn
        int calls = 0;
        const auto table = [&](int from, int to) {
            return each(from, to, [&, from, to](const float* in, float* out) {
                EXPECT_TRUE(std::all_of(in, in + from, [](float v) { return std::isfinite(v); }));
                for (int i = 0; i < to; ++i, ++calls)
                    out[i] = mask >> calls % 5 & 1 ? hostile[calls % 5] : in[0];
            });
        };
        BlackPointProbe probe = {kSpaceCmyk,  4,           true,       table(4, 3),
                                 table(3, 4), table(4, 3), table(3, 4)};
        for (const icRenderingIntent intent : {kPer, kRel, kSat}) {
            for (const double L :
                 {sourceBlackPoint(probe).L, destinationBlackPoint(probe, intent).L})
                EXPECT_TRUE(L >= 0 && L <= 50) << L;
        }
    }
}

TEST(BlackPointMapping, PutsBlackOnBlackAndLeavesWhite) {
    const double white[3] = {0.9642, 1, 0.8249};
    const auto luminance = [](double L) { return L > 8 ? std::pow((L + 16) / 116, 3) : L / 903.3; };
    constexpr double kStep = 2.5;  // of L*, to 50
    for (int first = 0; first <= 20; ++first) {
        for (int second = 0; second <= 20; ++second) {
            const double from = first * kStep, to = second * kStep;
            const BlackPointMapping m = mapBlack(from, to);
            EXPECT_TRUE(m.scale > 0.81 && m.scale < 1.23);
            for (size_t i = 0; i < 3; ++i) {
                EXPECT_NEAR(m.scale * white[i] + m.offset[i], white[i], 1e-15);
                EXPECT_NEAR(m.scale * luminance(from) * white[i] + m.offset[i],
                            luminance(to) * white[i], 1e-15);
            }
            EXPECT_EQ(m.scale == 1, from == to);
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
