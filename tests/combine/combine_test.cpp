// SPDX-License-Identifier: Apache-2.0
#include <cmath>

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using Chain = std::vector<icXform_t>;

OwnedXform matrixXform(uint32_t transType, double gamma = 1, const char* deviceClass = "scnr",
                       uint32_t intent = 1, const Bytes& white = xyzTag(0.9642, 1, 0.8249)) {
    ProfileBytes profile = rgbProfile({curveTag({uint16_t(gamma * 256)})}, deviceClass);
    return requested(profile.addTag("wtpt", white), intent, transType);
}

// All outputs rise in step from 0 to 65535 with the sum of the inputs.
OwnedXform lutXform(const char* in, const char* out, uint32_t inputs, uint32_t outputs,
                    uint32_t grid) {
    Samples clut;
    for (size_t p = 0; p < power(grid, inputs); ++p) {
        size_t sum = 0;
        for (size_t rest = p; rest != 0; rest /= grid)
            sum += rest % grid;
        clut.insert(clut.end(), outputs, uint16_t(sum * 65535 / (inputs * (grid - 1))));
    }
    return requested(lutProfile(gridTag(inputs, outputs, grid, clut), in, out), 1, icDeviceToPcs);
}

// Lab to inks: L* alone decides, and Lab white gets `tint` of every ink.
OwnedXform press(uint16_t tint, uint32_t outEntries = 256, const char* deviceClass = "prtr",
                 uint32_t intent = 1) {
    LutContent c;
    c.outputs = 4, c.grid = 3, c.inEntries = 2, c.outEntries = outEntries;
    for (const uint16_t ink : {uint16_t{65535}, uint16_t{30000}, tint})
        c.clut.insert(c.clut.end(), 9 * 4, ink);
    return requested(ProfileBytes(deviceClass, "Lab ", "CMYK").addTag("A2B0", lut16Tag(c)), intent,
                     icDeviceToPcs);
}

const Samples kCorners = {0, 0, 0, 65535, 0, 0, 0, 65535, 65535, 65535, 65535, 65535};

TEST(Combine, KeepsEveryCurveOnce) {
    Samples nodes;  // of a grid of three
    for (int p = 0; p < 27; ++p) {
        for (const int i : {p / 9, p / 3 % 3, p % 3})
            nodes.push_back(uint16_t(i * 65535 / 2.0 + 0.5));
    }
    // Exponents below 1 on the way back, so that a unit before the last curve is not many after it.
    const OwnedXform forward = matrixXform(icDeviceToPcs), back = matrixXform(icPcsToDevice);
    const OwnedXform bent = matrixXform(icDeviceToPcs, 1.8),
                     unbent = matrixXform(icPcsToDevice, 0.5);
    const OwnedXform lut = lutXform("RGB ", "XYZ ", 3, 3, 3),
                     link = lutXform("RGB ", "RGB ", 3, 3, 3);
    const Chain chains[] = {{forward.get(), unbent.get()},
                            {unbent.get(), bent.get()},
                            {link.get(), link.get()},
                            {lut.get(), unbent.get()},
                            {unbent.get(), link.get(), bent.get()},
                            {bent.get(), unbent.get(), forward.get(), back.get()}};
    for (size_t i = 0; i < std::size(chains); ++i) {
        // Curves ahead of the grid move its points: there, only the ends fall on them.
        const Samples in = chains[i][0] == bent.get() ? kCorners : nodes;
        Samples byHand = in;
        for (const icXform_t x : chains[i])
            byHand = converted(x, byHand);
        expectNear(combined(chains[i]), in, byHand, 3);
    }
}

// A grid of two has no points between the ends: its curves move into the result's tables, and the
// finer grid of the result changes nothing.
TEST(Combine, KeepsTheSmallestGrids) {
    LutContent small;
    SeededRandom random(6);
    small.clut = random.samples(24);
    for (size_t i = 0; i < 3 * 256; ++i) {
        small.inTables.push_back(uint16_t(257 * (i % 256) * (i % 256) / 255));
        small.outTables.push_back(uint16_t(65535 - small.inTables.back()));
    }
    const OwnedXform x = requested(lutProfile(lut16Tag(small), "RGB ", "RGB "), 1, icDeviceToPcs);
    const Samples any = random.samples(3000);
    expectNear(combined({x.get()}), any, converted(x.get(), any), 3);
}

TEST(Combine, NumbersTheStageThatDoesNotFit) {
    const OwnedXform toXyz = matrixXform(icDeviceToPcs), fromXyz = matrixXform(icPcsToDevice);
    const OwnedXform cmyk = lutXform("CMYK", "Lab ", 4, 3, 3), ink = press(0);
    const struct {
        Chain chain;
        int code, link;
    } cases[] = {{{toXyz.get(), toXyz.get()}, icErrXformKind, 1},
                 {{toXyz.get(), fromXyz.get(), fromXyz.get()}, icErrXformKind, 2},
                 {{toXyz.get(), ink.get(), cmyk.get(), toXyz.get()}, icErrXformKind, 3},
                 {{toXyz.get(), ink.get()}, 0, -1},
                 {{toXyz.get(), nullptr}, icErrInvalid, -1},
                 {{}, icErrInvalid, -1}};
    for (const auto& c : cases) {
        int link = -1;
        icXform_t out = toXyz.get();
        EXPECT_EQ(
            icCombineXforms(int(c.chain.size()), c.chain.data(), &out, &link, nullptr, nullptr, 0),
            c.code);
        EXPECT_EQ(link, c.link);
        EXPECT_EQ(out != nullptr, c.code == 0);
        icXformFree(out);
    }
}

TEST(Combine, KeepsThePaperOfAbsoluteColorimetry) {
    const Bytes paper = xyzTag(0.7, 0.75, 0.5);
    const OwnedXform from = matrixXform(icDeviceToPcs, 1, "scnr", 3, paper),
                     same = matrixXform(icPcsToDevice, 1, "scnr", 3, paper);
    const OwnedXform to = matrixXform(icPcsToDevice, 1, "scnr", 3, xyzTag(0.8, 0.8, 0.6));
    icXform_t measured = nullptr;  // device white is the paper, as seen by what follows
    const icXform_t chain[] = {from.get()};
    ASSERT_EQ(icBuild2LabXform(1, chain, &measured, nullptr), 0);
    const double f[3] = {std::cbrt(0.7 / 0.9642), std::cbrt(0.75), std::cbrt(0.5 / 0.8249)};
    const Samples lab = converted(OwnedXform(measured).get(), {65535, 65535, 65535});
    EXPECT_NEAR(lab[0], 652.8 * (116 * f[1] - 16), 4);
    EXPECT_NEAR(lab[1], 32768 + 256 * 500 * (f[0] - f[1]), 8);
    EXPECT_NEAR(lab[2], 32768 + 256 * 200 * (f[1] - f[2]), 5);
    // Two absolute transforms of one paper change nothing, those of two papers scale.
    expectNear(combined({from.get(), same.get()}), kCorners, kCorners, 12);
    const Samples scaled = {uint16_t(31595 * 0.7 / 0.8), uint16_t(32768 * 0.75 / 0.8),
                            uint16_t(27030 * 0.5 / 0.6)};
    expectNear(combined({from.get(), to.get()}), {65535, 65535, 65535},
               converted(matrixXform(icPcsToDevice).get(), scaled), 20);
}

TEST(Combine, MovesBlackBetweenDifferentBlacksOnly) {
    const OwnedXform camera = matrixXform(icDeviceToPcs),
                     display = matrixXform(icDeviceToPcs, 1, "mntr");
    const OwnedXform toDisplay = matrixXform(icPcsToDevice, 1, "mntr");
    const Samples grays = {0, 0, 0, 2700, 2700, 2700, 32768, 32768, 32768, 65535, 65535, 65535};
    Samples lowered;
    for (const uint16_t v : grays)
        lowered.push_back(uint16_t(std::max(0.0, (v - 2730.625) / 62804.375) * 65535));
    expectNear(combined({camera.get(), toDisplay.get()}), grays, lowered, 12);
    expectNear(combined({camera.get(), toDisplay.get()}, icCombineColorimetric), grays, grays, 12);
    const Samples white = {65535, 65535, 65535};
    expectNear(combined({display.get(), toDisplay.get()}), white, white, 12);  // both meet
}

TEST(Combine, CleansFaintInksOffBarePaper) {
    const struct {
        uint16_t tint;
        uint32_t entries;
        const char* deviceClass;
        uint32_t intent;
        int options;
        bool cleaned;
    } cases[] = {
        {1300, 256, "prtr", 0, 0, true}, {1320, 256, "prtr", 1, 0, false},
        {400, 16, "prtr", 1, 0, false},  {400, 256, "spac", 1, 0, false},
        {400, 256, "prtr", 3, 0, false}, {400, 256, "prtr", 1, icCombineKeepPaperWhite, false}};
    for (const auto& c : cases) {
        const OwnedXform x = press(c.tint, c.entries, c.deviceClass, c.intent),
                         result = combined({x.get()}, c.options);
        const Samples white = converted(result.get(), {65535, 32768, 32768});
        EXPECT_LE(largestDifference(white, Samples(4, c.cleaned ? 0 : c.tint)), c.cleaned ? 0 : 2)
            << c.tint;
        EXPECT_EQ(converted(result.get(), {0, 32768, 32768}), Samples(4, 65535));
        Samples ramp;
        for (uint32_t l = 0; l <= 65535; l += 257)
            ramp.insert(ramp.end(), {uint16_t(l), 32768, 32768});
        const Samples inks = converted(result.get(), ramp);
        // Around white, table entries on either side move: up to one of their steps more.
        EXPECT_LE(largestDifference(inks, converted(x.get(), ramp)), c.cleaned ? c.tint + 257 : 3);
    }
}

TEST(Combine, KeepsTheProgressContract) {
    const OwnedXform x = lutXform("RGB ", "RGB ", 3, 3, 33);
    const icXform_t chain[] = {x.get(), x.get()};
    icXform_t out = nullptr;
    Listener all{/*atStart=*/5}, refused;
    EXPECT_EQ(icCombineXforms(2, chain, &out, 0, nullptr, Listener::hear, &all, 0), 0);
    icXformFree(out);
    ASSERT_GT(all.calls.size(), 3U);
    EXPECT_TRUE(std::is_sorted(all.calls.begin(), all.calls.end()));
    EXPECT_EQ(all.calls[1].first, icIterProgress);  // one start, one end
    EXPECT_EQ(all.calls.end()[-2].first, icIterProgress);
    EXPECT_EQ(all.calls.back(), (std::pair<int, int>{icIterEnd, 100}));
    for (const int answer : {0, 77}) {
        Listener stop{0, answer, /*stopAfter=*/0};
        out = x.get();
        EXPECT_EQ(icCombineXforms(2, chain, &out, 0, nullptr, Listener::hear, &stop, 0),
                  answer ? answer : icErrInvalid);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(stop.calls.size(), 3U);
    }
    for (const int options : {4, -1}) {
        EXPECT_EQ(icCombineXforms(2, chain, &out, options, nullptr, Listener::hear, &refused, 0),
                  icErrInvalid);
    }
    EXPECT_EQ(refused.calls, Calls{});
}

}  // namespace
}  // namespace lumoxa_test
