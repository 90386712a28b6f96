// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "gray/shaping.h"
#include "gray/smoothing.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

// Black and contrast as far apart as the cubics have room for: a third of the range each.
TEST(Shaping, RisesSmoothlyWithALineInTheMiddle) {
    constexpr int kSteps = 20000;
    constexpr double kStep = 1.0 / kSteps;
    const double cases[][2] = {{0.0, -7.5}, {0.0, 0.0}, {0.0, 7.0},  {0.2, -4.0},
                               {0.2, 0.0},  {0.2, 3.0}, {0.3, -3.0}, {0.3, 0.5}};
    for (const auto& [black, parameter] : cases) {
        SCOPED_TRACE(testing::Message() << black << " " << parameter);
        const auto at = [black = black, parameter = parameter](int i) {
            return lumoxa::shapedTone(black, i * kStep, parameter);
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
}

// At either end of these parameters the cubics start level or upright.
TEST(Shaping, RisesFromABlackOfNothing) {
    for (int halves = -16; halves <= 16; ++halves) {
        double before = 0;
        for (int i = 0; i <= 20000; ++i) {
            const double tone = lumoxa::shapedTone(0, i / 20000.0, halves / 2.0);
            ASSERT_GE(tone, before) << halves << ' ' << i;
            before = tone;
        }
    }
}

TEST(Smoothing, KeepsLinesAndEnds) {
    for (const size_t entries : {69U, 137U, 3841U}) {
        for (const auto& [first, last] : {std::pair{0, 65535}, {65535, 0}, {777, 777}}) {
            Samples line(entries);
            for (size_t i = 0; i < entries; ++i) {
                const double share = static_cast<double>(i) / static_cast<double>(entries - 1);
                line[i] = static_cast<uint16_t>(std::lround(first + (last - first) * share));
            }
            Samples smooth = line;
            lumoxa::smoothTable(smooth);
            EXPECT_LE(largestDifference(smooth, line), 1) << entries;
            smooth.assign(entries, static_cast<uint16_t>(first));
            smooth[entries / 2] = 30000;
            smooth.back() = static_cast<uint16_t>(last);
            lumoxa::smoothTable(smooth);
            EXPECT_EQ(smooth.front(), first);
            EXPECT_EQ(smooth.back(), last);
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
