// SPDX-License-Identifier: Apache-2.0
//
// Tone curves fitted to patches, and the in and out tables of states that a caller has filled.
#include "gray/gray_tables.h"

#include <array>

#include "tests/support/gray_asks.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

Floats floats(const std::vector<Triple>& patches) {
    Floats out;
    for (const Triple& patch : patches)
        out.insert(out.end(), patch.begin(), patch.end());
    return out;
}

/// The six curves, or the code of their failure.
struct Curves {
    std::array<Floats, 6> c;
    std::array<float*, 6> at{};
    int code;

    Curves(int n, int steps, int layout, const Floats& samples,
           const unsigned short* pair = nullptr)
        : c{} {
        for (size_t i = 0; i < 6; ++i) {
            c[i].resize(static_cast<size_t>(steps) + 2, -1.0f);
            at[i] = c[i].data();
        }
        code = icBuildGrayPreLuts(n, steps, samples.data(), layout, pair, 0.5f, at.data());
    }
    Triple lab(size_t i) const { return decodedLab(c[3][i], c[4][i], c[5][i]); }
};

// As many steps as the ramp has inner points, so that nothing is interpolated; last a straight
// line, which stays one with any number of points.
TEST(ToneCurvesOfARamp, FallWithTheLeastChange) {
    const struct {
        std::vector<double> measured, falling;
    } cases[] = {{{100, 80, 60, 30, 10}, {100, 80, 60, 30, 10}},
                 {{100, 80, 85, 60, 62, 61, 20}, {100, 82.5, 82.5, 61, 61, 61, 20}},
                 {{100, 50, 60, 70, 20, 40}, {100, 60, 60, 60, 30, 30}},
                 {{100, 85, 70, 55, 40, 25, 10}, {100, 90, 80, 70, 60, 50, 40, 30, 20, 10}}};
    for (const auto& [measured, falling] : cases) {
        const Curves curves(static_cast<int>(measured.size()), static_cast<int>(falling.size()) - 2,
                            2, floats(grayPatches(measured)), EncodedTone({5, 5}).pair);
        ASSERT_EQ(curves.code, 0);
        for (size_t i = 0; i < falling.size(); ++i)
            EXPECT_LT(labDistance(curves.lab(i), {falling[i], 0, 0}), 0.01) << i;
        EXPECT_EQ(curves.c[1], curves.c[0]);
        EXPECT_EQ(curves.c[2], curves.c[0]);
    }
}

TEST(ToneCurveArguments, AreCheckedBeforeUse) {
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
                 {1, 1, 0, good, icErrInvalid},
                 {2, 0, 0, good, icErrInvalid},
                 {2, 255, 0, many, 0},
                 {2, 256, 0, many, icErrInvalid},
                 {2, 1, -1, good, icErrInvalid},
                 {2, 1, 3, good, icErrInvalid},
                 {2, 1, 0, {}, icErrInvalid},
                 {2, 1, 0, darkPaper, icErrInvalid},
                 {2, 1, 2, blackRamp, icErrInvalid}};
    for (const auto& c : cases) {
        const Curves curves(c.n, c.steps, c.layout, c.samples);
        EXPECT_EQ(curves.code, c.code) << c.n << " " << c.steps << " " << c.layout;
        EXPECT_EQ(curves.c[0][0] == -1.0f, c.code != 0);
    }
    EXPECT_EQ(icBuildGrayPreLuts(2, 1, good.data(), 0, nullptr, 0, nullptr), icErrInvalid);
    const Curves curves(2, 1, 0, good);
    for (size_t missing = 0; missing < 6; ++missing) {
        auto at = curves.at;
        at[missing] = nullptr;
        EXPECT_EQ(icBuildGrayPreLuts(2, 1, good.data(), 0, nullptr, 0, at.data()), icErrInvalid);
    }
}

/// The state of a neutral transform, which has the tables of the other direction.
struct State {
    OwnedXform xform;
    GrayConv_t& record;

    explicit State(bool out)
        : xform(Ask{}.from(loaded(grayProfile().image()), 1, out ? icDeviceToPcs : icPcsToDevice)),
          record(*const_cast<GrayConv_t*>(xform->state.as<GrayConv_t>())) {
        record.inEntries = 4096, record.outEntries = 3856;
    }
    int build(bool out, const unsigned short* pair) {
        return out ? icBuildGrayOutLuts(&record, icRelativeColorimetric, pair, 1, 0)
                   : icBuildGrayInLuts(&record, icRelativeColorimetric, pair, 0);
    }
    Samples tables(bool out) const {
        const uint16_t* first = out ? record.outTable1 : record.inTable1;
        return {first, first + 3 * size_t{out ? record.outEntries : record.inEntries}};
    }
};

class GrayTables : public testing::TestWithParam<bool> {};

INSTANTIATE_TEST_SUITE_P(Directions, GrayTables, testing::Bool());

// A state names its first tone for good: that tone keeps whatever tables are there.
TEST_P(GrayTables, StayAsLongAsTheirTone) {
    const bool out = GetParam();
    State state(out);
    uint16_t*& first = out ? state.record.outTable1 : state.record.inTable1;
    const EncodedTone cool({-2, -4}), neutral({0, 0});
    ASSERT_EQ(state.build(out, nullptr), 0);
    first[100] ^= 1;
    const Samples marked = state.tables(out);
    EXPECT_EQ(state.build(out, neutral.pair), 0);
    EXPECT_EQ(state.tables(out), marked);
    EXPECT_EQ(state.build(out, cool.pair), 0);
    const Samples toned = state.tables(out);
    EXPECT_NE(toned, marked);
    first[100] ^= 1;
    EXPECT_EQ(state.build(out, cool.pair), 0);
    EXPECT_EQ(state.build(out, nullptr), 0);
    EXPECT_EQ(state.tables(out), toned);
    EXPECT_EQ(state.record.keyFirst, 32768);
}

TEST_P(GrayTables, NeedACompleteState) {
    const bool out = GetParam();
    State state(out);
    EXPECT_EQ(icBuildGrayInLuts(nullptr, icPerceptual, nullptr, 0), icErrInvalid);
    EXPECT_EQ(icBuildGrayOutLuts(nullptr, icPerceptual, nullptr, 1, 0), icErrInvalid);
    const auto expectRefusalWith = [&](auto& part, auto value) {
        const auto kept = std::exchange(part, value);
        EXPECT_EQ(state.build(out, nullptr), icErrInvalid);
        part = kept;
    };
    GrayConv_t& r = state.record;
    for (float** part :
         {&r.curveX, &r.outCurveA, &r.outCurveB, &r.curveL, &r.inCurveA, &r.inCurveB, &r.samples})
        expectRefusalWith(*part, nullptr);
    expectRefusalWith(r.tagData, nullptr);
    expectRefusalWith(r.layoutFlag, 3U);
    expectRefusalWith(out ? r.outEntries : r.inEntries, 1U);
    expectRefusalWith(r.tagData[10], uint8_t{0});  // no steps
    r.tagData[8] = r.tagData[9] = 0;               // no grid
    EXPECT_EQ(state.build(out, nullptr), icErrInvalid);
    EXPECT_EQ(out ? r.outTable1 : r.inTable1, nullptr);
}

}  // namespace
}  // namespace lumoxa_test
