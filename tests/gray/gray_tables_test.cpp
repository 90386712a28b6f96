// SPDX-License-Identifier: Apache-2.0
//
// In and out tables of states that a caller has filled.
#include "gray/gray_tables.h"

#include <gtest/gtest.h>

#include "gray/gray_state.h"
#include "tests/support/gray_profiles.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

/// A state with the neutral curves of the ink printer and no tables.
struct State {
    static constexpr int kGrid = 5;
    std::vector<float> curves, samples;
    Bytes tag = Bytes(12);
    GrayConv_t record{};

    explicit State(int steps) : curves(6 * (static_cast<size_t>(steps) + 2)) {
        for (const Triple& patch : InkPrinter().patches(kGrid, steps))
            samples.insert(samples.end(), patch.begin(), patch.end());
        const uint16_t grid = kGrid;
        std::memcpy(&tag[8], &grid, sizeof grid);
        tag[10] = static_cast<uint8_t>(steps);
        float* at[6];
        for (size_t i = 0; i < 6; ++i)
            at[i] = &curves[i * curves.size() / 6];
        EXPECT_EQ(icBuildGrayPreLuts(kGrid, steps, samples.data(), 0, nullptr, 0, at), 0);
        record.curveX = at[0], record.outCurveA = at[1], record.outCurveB = at[2];
        record.curveL = at[3], record.inCurveA = at[4], record.inCurveB = at[5];
        record.tagData = tag.data(), record.samples = samples.data();
        record.keyFirst = record.keySecond = 32768;
        record.inEntries = 4096, record.outEntries = 3856;
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;
    ~State() {
        std::free(record.inTable1);
        std::free(record.outTable1);
    }
    int build(bool out, const unsigned short* pair, float fade = 0, uint32_t intent = 1) {
        return out ? icBuildGrayOutLuts(&record, icRenderingIntent{intent}, pair, 1, 0)
                   : icBuildGrayInLuts(&record, icRenderingIntent{intent}, pair, fade);
    }
    Samples tables(bool out) const {
        const uint16_t* first = out ? record.outTable1 : record.inTable1;
        return {first, first + 3 * size_t{out ? record.outEntries : record.inEntries}};
    }
};

class GrayTables : public testing::TestWithParam<bool> {};

// A state names its first tone for good: that tone keeps whatever tables are there.
TEST_P(GrayTables, StayOrGoAgainstTheirTone) {
    const bool out = GetParam();
    State state(16);
    uint16_t*& first = out ? state.record.outTable1 : state.record.inTable1;
    const EncodedTone cool({-2, -4}), neutral({0, 0});
    ASSERT_EQ(state.build(out, nullptr), 0);
    const Samples fresh = state.tables(out);
    first[100] ^= 1;
    const Samples marked = state.tables(out);
    EXPECT_EQ(state.build(out, neutral.pair), 0);
    EXPECT_EQ(state.tables(out), marked);
    Samples toned;
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(state.build(out, cool.pair), 0);
        if (round == 0) toned = state.tables(out);
        EXPECT_EQ(state.tables(out), toned);
        first[100] ^= 1;
    }
    EXPECT_NE(toned, fresh);
    EXPECT_EQ(state.build(out, cool.pair), 0);
    EXPECT_EQ(state.build(out, nullptr), 0);
    EXPECT_EQ(state.tables(out), toned);
    EXPECT_EQ(state.record.keyFirst, 32768);
}

TEST_P(GrayTables, AreBuiltOfNothing) {
    const bool out = GetParam();
    State state(16);
    EXPECT_EQ(icBuildGrayInLuts(nullptr, icPerceptual, nullptr, 0), icErrInvalid);
    EXPECT_EQ(icBuildGrayOutLuts(nullptr, icPerceptual, nullptr, 1, 0), icErrInvalid);
    GrayConv_t& r = state.record;
    for (float** part :
         {&r.curveX, &r.outCurveA, &r.outCurveB, &r.curveL, &r.inCurveA, &r.inCurveB, &r.samples}) {
        float* const kept = std::exchange(*part, nullptr);
        EXPECT_EQ(state.build(out, nullptr), icErrInvalid);
        *part = kept;
    }
    for (uint32_t* count : {&r.layoutFlag, out ? &r.outEntries : &r.inEntries}) {
        const uint32_t kept = std::exchange(*count, count == &r.layoutFlag ? 3 : 1);
        EXPECT_EQ(state.build(out, nullptr), icErrInvalid);
        *count = kept;
    }
    for (const size_t at : {8U, 10U}) {  // no grid, no steps
        const Bytes kept = std::exchange(state.tag, Bytes(12));
        state.tag[18 - at] = kept[18 - at];
        r.tagData = state.tag.data();
        EXPECT_EQ(state.build(out, nullptr), icErrInvalid) << at;
        state.tag = kept;
    }
    r.tagData = nullptr;
    EXPECT_EQ(state.build(out, nullptr), icErrInvalid);
    EXPECT_EQ(r.inTable1, nullptr);
    EXPECT_EQ(r.outTable1, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Directions, GrayTables, testing::Bool());

TEST(GrayTableEntries, MissTheCurves) {
    for (const int steps : {8, 16, 20}) {
        for (const uint32_t intent : {0U, 1U}) {
            State state(steps);
            const size_t middle = static_cast<size_t>(steps) / 2;
            // Its own curves count, and are not fitted anew for the tone they have.
            const float own = state.record.inCurveA[middle] += 500;
            ASSERT_EQ(state.build(true, nullptr, 0, intent), 0);
            ASSERT_EQ(state.build(false, nullptr, 0, intent), 0);
            const GrayConv_t& r = state.record;
            EXPECT_EQ(r.outTable2, r.outTable1 + 3856);
            EXPECT_EQ(r.outTable3, r.outTable2 + 3856);
            EXPECT_EQ(r.inTable3, r.inTable1 + 2 * 4096);
            for (const uint16_t* table : {r.outTable1, r.outTable2, r.outTable3}) {
                for (int i = 3840; i < 3856; ++i)
                    EXPECT_EQ(table[i], 0) << i;  // paper at L* = 100, and nothing beyond
            }
            for (const uint16_t* table : {r.outTable2, r.outTable3}) {
                for (int i = 1; i < 3840; ++i)  // no crease where the toners end, at the last step
                    ASSERT_LT(std::abs(table[i - 1] - 2 * table[i] + table[i + 1]), 40) << i;
            }
            EXPECT_EQ(r.outTable1[0], 65535);
            EXPECT_GT(r.outTable1[3839], 0);
            const auto at =
                static_cast<size_t>(std::lround(double(r.curveX[middle]) * 4095 / 65535));
            EXPECT_EQ(r.inTable1[0], 65280);
            EXPECT_NEAR(r.inTable1[4095], r.curveL[steps + 1], 0.6);
            EXPECT_NEAR(r.inTable1[at], r.curveL[middle], 16) << steps;
            EXPECT_NEAR(r.inTable2[at], own, 3) << steps;
            EXPECT_NEAR(r.inTable3[at], r.inCurveB[middle], 2) << steps;
        }
    }
}

// The fade is told to the in tables alone.
TEST(GrayTableFade, ReachesTheOutTables) {
    const EncodedTone cool({-2, -4});
    State faded(16), plain(16);
    ASSERT_EQ(faded.build(false, cool.pair, 0.8f), 0);
    ASSERT_EQ(plain.build(false, cool.pair, 0), 0);
    EXPECT_NE(faded.tables(false), plain.tables(false));
    ASSERT_EQ(faded.build(true, cool.pair), 0);
    ASSERT_EQ(plain.build(true, cool.pair), 0);
    EXPECT_EQ(faded.tables(true), plain.tables(true));
    for (const GrayConv_t* r : {&faded.record, &plain.record})
        EXPECT_NEAR(r->inCurveB[2], 32768 - 4 * 256, 10);
}

}  // namespace
}  // namespace lumoxa_test
