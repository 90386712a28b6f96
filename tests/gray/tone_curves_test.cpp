// SPDX-License-Identifier: Apache-2.0
//
// Tone curves fitted to patches.
#include <array>

#include <gtest/gtest.h>

#include "lumoxa/gray.h"
#include "tests/support/gray_profiles.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using Floats = std::vector<float>;

Floats floats(const std::vector<Triple>& patches) {
    Floats out;
    for (const Triple& patch : patches)
        out.insert(out.end(), patch.begin(), patch.end());
    return out;
}

/// The six curves, or the code of their failure.
struct Curves {
    std::array<Floats, 6> c;
    int code;

    Curves(int n, int steps, int layout, const Floats& samples, const unsigned short* pair,
           float fade) {
        float* curves[6];
        for (size_t i = 0; i < 6; ++i) {
            c[i].resize(static_cast<size_t>(steps) + 2, -1.0f);
            curves[i] = c[i].data();
        }
        code = icBuildGrayPreLuts(n, steps, samples.data(), layout, pair, fade, curves);
    }
    Triple lab(size_t i) const { return decodedLab(c[3][i], c[4][i], c[5][i]); }
};

struct Fit {
    const char* name;
    int n, steps;
    Tone tone;
    float fade;
};

class ToneCurves : public testing::TestWithParam<Fit> {};

// What the printer does at the companions found: the tone is there, or as near as the toners get,
// and the curves say what is printed.
TEST_P(ToneCurves, MissTheTone) {
    const auto& [name, n, steps, tone, fade] = GetParam();
    const InkPrinter printer;
    const Curves curves(n, steps, 0, floats(printer.patches(n, steps)), EncodedTone(tone).pair,
                        fade);
    ASSERT_EQ(curves.code, 0);
    const auto last = static_cast<size_t>(steps) + 1;
    for (size_t s = 0; s <= last; ++s) {
        const double x = 65535.0 * static_cast<double>(s) / static_cast<double>(last);
        EXPECT_NEAR(curves.c[0][s], x, 0.01);
        const Triple printed = printer.lab(printer.xyz(x, curves.c[1][s], curves.c[2][s]));
        EXPECT_LT(labDistance(printed, curves.lab(s)), 0.15) << s;
        const auto wanted = [tone = tone, fade = fade](double L) {
            const double middle = 2 * L / 100 - 1, share = 1 - fade * middle * middle;
            return Tone{tone.a * share, tone.b * share};
        };
        if (s == 0 || s == last) {
            EXPECT_EQ(curves.c[1][s], 0.0f);
            EXPECT_EQ(curves.c[2][s], 0.0f);
            EXPECT_LT(toneDistance(printed, {curves.lab(s)[1], curves.lab(s)[2]}), 0.005);
        } else {
            const Triple nearest = nearestTone(printer, x, wanted);
            EXPECT_LT(toneDistance(printed, wanted(printed[0])),
                      toneDistance(nearest, wanted(nearest[0])) + 0.15)
                << s;
            EXPECT_LT(curves.c[3][s], curves.c[3][s - 1]);
        }
    }
    EXPECT_NEAR(curves.c[3][0], 65280, 0.1);
}

INSTANTIATE_TEST_SUITE_P(
    Tones, ToneCurves,
    testing::Values(Fit{"neutral", 5, 16, {0, 0}, 0}, Fit{"cool", 5, 16, {-2, -4}, 0},
                    Fit{"faded", 5, 16, {2, -5}, 0.7f}, Fit{"fullyFaded", 5, 16, {-3, -6}, 1},
                    Fit{"outOfReach", 5, 16, {3, 12}, 0}, Fit{"fineGrid", 9, 8, {1, -3}, 0},
                    Fit{"fewSteps", 7, 3, {0, 0}, 0.5f}),
    [](const auto& info) { return std::string(info.param.name); });

// As many steps as the ramp has inner points, so that nothing is interpolated.
TEST(ToneCurvesOfARamp, RiseOrChangeMoreThanNeeded) {
    const struct {
        std::vector<double> measured, falling;
    } cases[] = {{{100, 80, 60, 30, 10}, {100, 80, 60, 30, 10}},
                 {{100, 80, 85, 60, 62, 61, 20}, {100, 82.5, 82.5, 61, 61, 61, 20}},
                 {{100, 50, 60, 70, 20, 40}, {100, 60, 60, 60, 30, 30}},
                 {{100, 100, 5, 6, 4}, {100, 100, 5.5, 5.5, 4}}};
    for (const auto& c : cases) {
        const int n = static_cast<int>(c.measured.size());
        const Curves curves(n, n - 2, 2, floats(grayPatches(c.measured)), EncodedTone({5, 5}).pair,
                            0.5f);
        ASSERT_EQ(curves.code, 0);
        for (size_t i = 0; i < c.falling.size(); ++i) {
            EXPECT_NEAR(curves.lab(i)[0], c.falling[i], 0.005) << i;
            EXPECT_NEAR(curves.lab(i)[1], 0, 0.01) << i;
            EXPECT_NEAR(curves.lab(i)[2], 0, 0.01) << i;
        }
        EXPECT_EQ(curves.c[1], curves.c[0]);
        EXPECT_EQ(curves.c[2], curves.c[0]);
    }
}

TEST(ToneCurvesOfARamp, AreResampledOffTheRamp) {
    std::vector<double> line;  // a straight line stays one, with any number of points
    for (int i = 0; i < 7; ++i)
        line.push_back(100 - 15 * i);
    const Curves curves(7, 8, 2, floats(grayPatches(line)), nullptr, 0);
    for (size_t i = 0; i < 10; ++i) {
        EXPECT_NEAR(curves.c[0][i], 65535.0 * static_cast<double>(i) / 9, 0.01);
        EXPECT_NEAR(curves.lab(i)[0], 100 - 10.0 * static_cast<double>(i), 0.005);
    }
}

TEST(ToneCurveArguments, AreUsedBeforeTheyAreChecked) {
    const Floats good = floats(InkPrinter().patches(2, 1));
    const Floats many(size_t{3} * (4 * 256 + 2), 0.5f);
    Floats darkPaper = good, blackRamp = good;
    darkPaper[darkPaper.size() - 5] = 0;
    blackRamp[2] = 0;
    const struct {
        int n, steps, layout;
        const Floats& samples;
        int code;
    } cases[] = {{2, 1, 0, good, 0},
                 {2, 1, 1, good, 0},
                 {2, 1, 2, good, 0},
                 {1, 1, 0, good, icErrInvalid},
                 {-2, 1, 0, good, icErrInvalid},
                 {2, 0, 0, good, icErrInvalid},
                 {2, 255, 0, many, 0},
                 {2, 256, 0, many, icErrInvalid},
                 {2, 1, -1, good, icErrInvalid},
                 {2, 1, 3, good, icErrInvalid},
                 {2, 1, 0, {}, icErrInvalid},
                 {2, 1, 0, darkPaper, icErrInvalid},
                 {2, 1, 2, blackRamp, icErrInvalid}};
    for (const auto& c : cases) {
        const Curves curves(c.n, c.steps, c.layout, c.samples, nullptr, 0);
        EXPECT_EQ(curves.code, c.code) << c.n << " " << c.steps << " " << c.layout;
        EXPECT_EQ(curves.c[0][0] == -1.0f, c.code != 0);
    }
    EXPECT_EQ(icBuildGrayPreLuts(2, 1, good.data(), 0, nullptr, 0, nullptr), icErrInvalid);
    for (size_t missing = 0; missing < 6; ++missing) {
        float values[3];
        std::array<float*, 6> curves;
        curves.fill(values);
        curves[missing] = nullptr;
        EXPECT_EQ(icBuildGrayPreLuts(2, 1, good.data(), 0, nullptr, 0, curves.data()),
                  icErrInvalid);
    }
    const Curves neutral(2, 1, 0, good, EncodedTone({0, 0}).pair, 0);
    EXPECT_EQ(Curves(2, 1, 0, good, nullptr, 0).c, neutral.c);
}

}  // namespace
}  // namespace lumoxa_test
