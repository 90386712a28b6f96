// SPDX-License-Identifier: Apache-2.0
//
// The stages between a perceptual rendering and the range of a device.
#include <cmath>

#include <gtest/gtest.h>

#include "eval/kernel_table.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

// A device that gives one colour for all channels at 0 and another one for all at 65535, and grey
// in the other corners of its grid.
OwnedXform device(const Samples& atZero, const Samples& atFull, const char* in = "RGB ",
                  const char* out = "Lab ", uint32_t inputs = 3) {
    const size_t outputs = atZero.size();
    Samples clut(power(2, inputs) * outputs, 30000);
    std::copy(atZero.begin(), atZero.end(), clut.begin());
    std::copy(atFull.begin(), atFull.end(), clut.end() - static_cast<ptrdiff_t>(outputs));
    const Bytes tag = gridTag(inputs, static_cast<uint32_t>(outputs), 2, clut);
    return requested(lutProfile(tag, in, out), 1, icDeviceToPcs);
}

OwnedXform squeezing(const OwnedXform& x) {
    return OwnedXform(icGetPerceptualToRelativeXform(x.get()));
}

OwnedXform stretching(const OwnedXform& x) {
    return OwnedXform(icGetRelativeToPerceptualXform(x.get()));
}

// A stage applied to pixels, as a chain applies it.
Samples through(const OwnedXform& stage, const Samples& pixels) {
    if (stage == nullptr || !stage->state) return {};
    Samples out(pixels.size());
    const lumoxa::BoundKernel kernel = lumoxa::chooseStageKernel(*stage);
    kernel(pixels.data(), out.data(), static_cast<int>(pixels.size() / 3));
    return out;
}

const Samples kBlack = {6528, 33000, 32000}, kWhite = {58752, 32500, 34000};
const Samples kEnds = {0, 32768, 32768, 65280, 32768, 32768};  // of a perceptual rendering

Samples joined(Samples a, const Samples& b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

uint16_t limited(double value) {
    return static_cast<uint16_t>(std::clamp(value, 0.0, 65280.0));
}

TEST(BlackWhiteStages, ScaleStraightBetweenBlackAndWhite) {
    for (const auto& [black, white] :
         {std::pair{kBlack, kWhite},
          {Samples(kEnds.begin(), kEnds.begin() + 3), Samples(kEnds.begin() + 3, kEnds.end())}}) {
        const OwnedXform x = device(black, white);
        Samples pixels = SeededRandom(5).samples(3000), relative, perceptual;
        pixels.insert(pixels.end(), {65280, 0, 65400, 0, 65400, 0});  // a* and b* beyond their ends
        for (size_t i = 0; i < pixels.size(); i += 3) {
            const double t = pixels[i] / 65280.0, range = white[0] - black[0];
            relative.push_back(limited(black[0] + t * range));
            perceptual.push_back(limited((pixels[i] - black[0]) / range * 65280));
            for (size_t c = 1; c < 3; ++c) {
                const double shift = black[c] + t * (white[c] - black[c]) - 32768;
                relative.push_back(limited(pixels[i + c] + shift));
                perceptual.push_back(limited(pixels[i + c]));
            }
        }
        EXPECT_LE(largestDifference(through(squeezing(x), pixels), relative), 1);
        EXPECT_LE(largestDifference(through(stretching(x), pixels), perceptual), 2);
        EXPECT_EQ(through(squeezing(x), kEnds), joined(black, white));
    }
}

TEST(BlackWhiteStages, TakeTheLighterEndForWhite) {
    const Samples ends = joined(kBlack, kWhite);
    // Lighter at 0: a negative, or inks.
    for (const OwnedXform& x : {device(kWhite, kBlack), device(kBlack, kWhite)})
        EXPECT_EQ(through(squeezing(x), kEnds), ends);
    const OwnedXform press = device(kWhite, kBlack, "CMYK", "Lab ", 4);
    EXPECT_EQ(through(stretching(press), {6527, 1, 2, 6528, 1, 2, 58752, 1, 2, 58753, 1, 2}),
              (Samples{0, 1, 2, 0, 1, 2, 65280, 1, 2, 65280, 1, 2}));
}

TEST(BlackWhiteStages, StepWhereBlackIsWhite) {
    const OwnedXform x = device({20000, 32768, 32768}, {20000, 32768, 32768});
    EXPECT_EQ(through(stretching(x), {0, 1, 2, 19999, 1, 2, 20000, 1, 2, 65535, 1, 2}),
              (Samples{0, 1, 2, 0, 1, 2, 65280, 1, 2, 65280, 1, 2}));
    EXPECT_EQ(through(squeezing(x), kEnds), (Samples{20000, 32768, 32768, 20000, 32768, 32768}));
}

// CIE 15 in double precision; 1.0 = 32768 in XYZ, and nothing is lighter than the white.
Samples labOf(const Samples& xyz) {
    const double white[3] = {31595, 32768, 27030};
    double f[3];
    for (size_t c = 0; c < 3; ++c) {
        const double t = std::min(xyz[c] / white[c], 1.0);
        f[c] = t < 0.008856 ? 7.787 * t + 16 / 116.0 : std::cbrt(t);
    }
    return {uint16_t(652.8 * (116 * f[1] - 16) + 0.5), uint16_t(32768 + 128000 * (f[0] - f[1])),
            uint16_t(32768 + 51200 * (f[1] - f[2]))};
}

TEST(BlackWhiteStages, MeasureXyzDevicesInLab) {
    const std::pair<Samples, Samples> cases[] = {
        {{100, 120, 300}, {25000, 28000, 15000}},   // below and above the linear part
        {{900, 700, 400}, {40000, 32768, 27030}}};  // X beyond the white
    for (const auto& [black, white] : cases) {
        const OwnedXform x = device(black, white, "RGB ", "XYZ ");
        const Samples ends = through(squeezing(x), kEnds);
        EXPECT_LE(largestDifference(ends, joined(labOf(black), labOf(white))), 2) << black[0];
    }
}

TEST(BlackWhiteStages, WorkInsideChainsOnly) {
    const OwnedXform x = device(kBlack, kWhite), toRelative = squeezing(x),
                     toPerceptual = stretching(x);
    expectNear(combined({x.get(), toPerceptual.get()}), {0, 0, 0, 65535, 65535, 65535},
               through(toPerceptual, joined(kBlack, kWhite)), 2);
    const OwnedXform lab = requested(lutProfile(gridTag(3, 3, 2, {}), "Lab ", "Lab "), 1, 1);
    const Samples pixels = {65535, 40000, 30000, 0, 32768, 32768};
    expectNear(combined({lab.get(), toRelative.get(), lab.get()}), pixels,
               through(toRelative, pixels), 3);
    for (const icXform_t stage : {toRelative.get(), toPerceptual.get()})  // for chains only
        EXPECT_EQ(converted(stage, {1, 2, 3}, 16, 16, icErrXformKind), Samples(3));
}

TEST(BlackWhiteStages, RefuseWhatHasNoBlackAndWhite) {
    EXPECT_EQ(squeezing(nullptr), nullptr);
    EXPECT_EQ(stretching(nullptr), nullptr);
    EXPECT_EQ(squeezing(device(kWhite, kBlack, "CMYK", "Lab ", 4)), nullptr);  // not RGB

    const OwnedXform sources[] = {device({1, 2, 3, 4}, {5, 6, 7, 8}, "RGB ", "CMYK"),
                                  device(kBlack, kWhite, "RGB ", "RGB "),
                                  requested(rgbProfile({curveTag({563})}, "scnr"), 1, 7)};
    for (const OwnedXform& source : sources) {
        EXPECT_EQ(stretching(source), nullptr);
        const OwnedXform stage = squeezing(source);
        ASSERT_NE(stage, nullptr);
        combined({stage.get()}, 0, icErrXformKind);
    }
}

// They share what they were made of, and the last one takes it along.
TEST(BlackWhiteStages, OutliveTheTransformInAnyOrder) {
    std::vector<size_t> order = {0, 1, 2, 3};
    do {
        OwnedXform holders[4];
        holders[0] = device(kBlack, kWhite);
        for (size_t i = 1; i < 4; ++i)
            holders[i] = i == 2 ? stretching(holders[0]) : squeezing(holders[0]);
        const Samples relative = through(holders[1], kEnds), stretched = through(holders[2], kEnds);
        for (const size_t released : order) {
            holders[released].reset();
            for (size_t i = 1; i < 4; ++i) {
                if (holders[i] == nullptr) continue;
                EXPECT_EQ(through(holders[i], kEnds), i == 2 ? stretched : relative);
            }
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

}  // namespace
}  // namespace lumoxa_test
