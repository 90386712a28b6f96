// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include <gtest/gtest.h>

#include "gray/shaping.h"
#include "gray/smoothing.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using lumoxa::shapedTone;
using lumoxa::smoothTable;

class Shaping : public testing::TestWithParam<std::pair<double, double>> {};

TEST_P(Shaping, HasASteepOrFlatOrBrokenMiddle) {
    const auto [black, parameter] = GetParam();
    constexpr int kSteps = 20000;
    constexpr double kStep = 1.0 / kSteps;
    const auto at = [&, black = black, parameter = parameter](int i) {
        return shapedTone(black, i * kStep, parameter);
    };
    EXPECT_NEAR(at(0), 0, 1e-6);
    EXPECT_NEAR(at(kSteps), 1, 1e-6);
    const double contrast = parameter >= 0 ? 1 + parameter / 4 : 1 / (1 - parameter / 4);
    const double full = contrast / (1 - black);
    double before = (at(1) - at(0)) / kStep;
    int onTheLine = 0;
    for (int i = 1; i < kSteps; ++i) {
        const double slope = (at(i + 1) - at(i)) / kStep;
        ASSERT_GE(slope, -1e-9) << i;
        // A joint that is none has a jump of its value, or of its slope.
        ASSERT_NEAR(slope, before, 0.05 * (slope + before) + 0.03) << i;
        onTheLine += std::fabs(slope - full) < 1e-4;
        before = slope;
    }
    EXPECT_GT(onTheLine, kSteps / 50);
}

// Black and contrast as far apart as the cubics have room for: a third of the range each.
INSTANTIATE_TEST_SUITE_P(Contrasts, Shaping,
                         testing::Values(std::pair{0.0, -7.5}, std::pair{0.0, -1.0},
                                         std::pair{0.0, 0.5}, std::pair{0.0, 7.0},
                                         std::pair{0.05, -6.5}, std::pair{0.05, 0.0},
                                         std::pair{0.05, 6.5}, std::pair{0.2, -4.0},
                                         std::pair{0.2, 0.0}, std::pair{0.2, 3.0},
                                         std::pair{0.3, -3.0}, std::pair{0.3, 0.5}));

// At either end of these parameters the cubics start level or upright.
TEST(ShapingOnBlackOfNothing, TurnsBack) {
    for (double parameter = -8.0; parameter <= 8.0; parameter += 0.5) {
        double before = 0.0;
        for (int i = 0; i <= 20000; ++i) {
            const double tone = shapedTone(0.0, i / 20000.0, parameter);
            ASSERT_GE(tone, before) << parameter << ' ' << i;
            before = tone;
        }
    }
}

// The line reaches down to three quarters of the way from the middle to where the cubic would have
// to start level, 1.5 x black.
TEST(ShapingWithFullSlope, JoinsElsewhere) {
    for (const double black : {0.05, 0.2, 0.3}) {
        const double joint = 0.5 + 0.75 * (1.5 * black - 0.5);
        const auto line = [&](double t) { return 1 + (t - 1) / (1 - black); };
        EXPECT_NEAR(shapedTone(black, joint + 0.001, 0), line(joint + 0.001), 1e-9);
        EXPECT_GT(shapedTone(black, joint - 0.02, 0), line(joint - 0.02) + 1e-7);
    }
}

TEST(ShapingOfNothing, Shapes) {
    for (int i = 0; i <= 1000; ++i)
        EXPECT_NEAR(shapedTone(0, i / 1000.0, 0), i / 1000.0, 1e-6);
}

TEST(Smoothing, BendsLinesOrMovesEnds) {
    for (const size_t entries : {69U, 137U, 3841U}) {
        for (const auto& [first, last] : {std::pair{0, 65535}, {65535, 0}, {777, 777}}) {
            Samples line(entries);
            for (size_t i = 0; i < entries; ++i) {
                const double share = static_cast<double>(i) / static_cast<double>(entries - 1);
                line[i] = static_cast<uint16_t>(std::lround(first + (last - first) * share));
            }
            Samples smooth = line;
            smoothTable(smooth);
            EXPECT_LE(largestDifference(smooth, line), 1) << entries;
            smooth.assign(entries, static_cast<uint16_t>(first));
            smooth[entries / 2] = 30000;
            smooth.back() = static_cast<uint16_t>(last);
            smoothTable(smooth);
            EXPECT_EQ(smooth.front(), first);
            EXPECT_EQ(smooth.back(), last);
        }
    }
}

TEST(Smoothing, SpreadsAnImpulseOtherwise) {
    constexpr int kMiddle = 500, kBase = 2000, kHeight = 36800;  // the sum of the weights x 1000
    Samples table(1001, kBase);
    table[kMiddle] += kHeight;
    smoothTable(table);
    int sum = 0;
    for (int i = 0; i < 1001; ++i)
        sum += table[size_t(i)] - kBase;
    EXPECT_NEAR(sum, kHeight, 69);  // each of the entries is rounded
    const std::pair<int, int> spread[] = {{0, 1000}, {11, 617}, {23, 200}, {46, 100},
                                          {58, 48},  {68, 4},   {69, 0},   {200, 0}};
    for (const auto& [distance, height] : spread) {
        EXPECT_NEAR(table[size_t(kMiddle + distance)] - kBase, height, 1) << distance;
        EXPECT_EQ(table[size_t(kMiddle + distance)], table[size_t(kMiddle - distance)]);
    }
}

TEST(Smoothing, StartsAtOtherTables) {
    for (const size_t entries : {0U, 1U, 68U, 69U}) {
        Samples table(entries, 100);
        if (entries > 2) table[entries / 2] = 50000;
        const Samples before = table;
        smoothTable(table);
        EXPECT_EQ(table == before, entries <= 68) << entries;
    }
}

}  // namespace
}  // namespace lumoxa_test
