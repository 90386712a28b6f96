// SPDX-License-Identifier: Apache-2.0
//
// Gray transforms out of profiles: what the seven forms ask for, and what the printer then prints.
#include "tests/support/gray_asks.h"

namespace lumoxa_test {
namespace {

const Tone kCool{-2, -4};
const Floats kSplit = {25, -2, -1, 60, 0, 0, 90, 2, -3};

Samples lightnesses() {
    Samples pixels;
    for (int i = 0; i <= 256; ++i)
        pixels.insert(pixels.end(), {uint16_t(255 * i), 32768, 32768});
    return pixels;
}

// ---- what is printed ----

struct Print {
    const char* name;
    Ask ask = {};
    int steps = 16;
    friend std::ostream& operator<<(std::ostream& out, const Print& p) { return out << p.name; }
};
const Print kPrints[] = {{"neutral"},
                         {"cool", {2, kCool}},
                         {"blue", {2, Tone{0, -6}}},
                         {"faded", {5, Tone{1, -4}, 0.8f}},
                         {"split", {7, Tone{0, -2}, 0, kSplit}},
                         {"neutralOf8Steps", {}, 8},
                         {"coolOf20Steps", {2, kCool}, 20}};

class Prints : public testing::TestWithParam<std::tuple<Print, uint32_t>> {};

INSTANTIATE_TEST_SUITE_P(Tones, Prints,
                         testing::Combine(testing::ValuesIn(kPrints), testing::Values(0, 1)));

// The curves start at bare paper and end at bare black, so the tone sets in at the first step and
// ends at the last; between them it is there where the toners can make it.
TEST_P(Prints, HaveTheTone) {
    const auto& [print, intent] = GetParam();
    const Ask& ask = print.ask;
    const InkPrinter printer;
    const OwnedProfile profile = loaded(grayProfile(5, print.steps).image());
    const OwnedXform toDevice = ask.from(profile, intent, icPcsToDevice);
    const OwnedXform toLab = ask.from(profile, intent, icDeviceToPcs);
    const Samples wanted = lightnesses(), device = converted(toDevice.get(), wanted);
    const Samples back = converted(toLab.get(), device);
    const double first = 65535.0 / (print.steps + 1), last = 65535 - first;
    double sum = 0, largest = 0, before = -1;
    int count = 0;
    for (size_t i = 0; i < device.size(); i += 3) {
        const Triple lab = printer.lab(printer.xyz(device[i], device[i + 1], device[i + 2]));
        // Between the last step and black, plenty of toner on nearly full black prints darker than
        // black alone, and no patch says so.
        EXPECT_GE(lab[0], before - (device[i] > last ? 0.25 : 0)) << i;
        before = lab[0];
        if (i % 4 != 0 || device[i] < first || device[i] > last) continue;
        const auto tone = [&wanted = ask](double L) { return wanted.at(L); };
        const Triple nearest = nearestTone(printer, device[i], tone);
        if (toneDistance(nearest, tone(nearest[0])) > 0.05) continue;
        const double L = intent == 0 ? lab[0] : wanted[i] / 652.8;
        const double error = labDistance(lab, {L, tone(L).a, tone(L).b});
        sum += error, largest = std::max(largest, error), ++count;
        EXPECT_LT(labDistance(decodedLab(back[i], back[i + 1], back[i + 2]), lab), 1.5) << i / 3;
    }
    ASSERT_GT(count, 30);
    EXPECT_LT(sum / count, 0.5);
    EXPECT_LT(largest, 1.5);
}

TEST(PrintsByACurve, HaveItsLightness) {
    const InkPrinter printer;
    const OwnedProfile profile = loaded(grayProfile().image());
    for (const uint32_t intent : {0U, 1U}) {
        const Ask ask{3, kCool, 0, {}, toneCurve(0.3, 0.95)};
        const Samples in = lightnesses();
        const Samples out = converted(ask.from(profile, intent, icPcsToDevice).get(), in);
        for (size_t i = 0; i < in.size(); i += 3) {
            const Triple lab = printer.lab(printer.xyz(out[i], out[i + 1], out[i + 2]));
            EXPECT_NEAR(lab[0], 30 + 0.65 * in[i] / 652.8, 0.2) << i;
        }
    }
}

// A black below L* 10 counts as one unit lighter, and where more ink prints lighter again, the
// print stops before.
TEST(PrintsOfARamp, ReachTheDarkestTone) {
    const struct {
        std::vector<double> lightness;
        double darkest;
        bool toTheEnd;
    } cases[] = {{{100, 80, 60, 40, 20, 5}, 6, false},
                 {{100, 80, 60, 40, 20, 12}, 12, true},
                 {{100, 75, 50, 25, 12, 11, 14}, 12, false}};
    for (const auto& c : cases) {
        const int n = static_cast<int>(c.lightness.size());
        const OwnedProfile profile =
            loaded(grayProfile(grayTag(n, 16, 2, grayPatches(c.lightness))).image());
        for (const uint32_t intent : {0U, 1U}) {
            const Samples device =
                converted(Ask{}.from(profile, intent, icPcsToDevice).get(), {0, 32768, 32768});
            const Samples lab = converted(Ask{}.from(profile, intent, icDeviceToPcs).get(), device);
            EXPECT_NEAR(lab[0] / 652.8, c.darkest, 0.5);
            EXPECT_EQ(device[0] == 65535, c.toTheEnd) << c.darkest;
        }
    }
}

// ---- what the forms ask for ----

/// Whether two forms give the same: '=' or '!' to Lab and from it, perceptual, then relative.
struct Pair {
    Ask left, right;
    const char* same;
};

TEST(GrayForms, UseEachOfTheirParameters) {
    const OwnedProfile profile = loaded(grayProfile().image());
    const Floats line = toneCurve(0, 1), other = toneCurve(0.3, 0.9);
    const Pair pairs[] = {
        {{1}, {2, Tone{0, 0}}, "===="},
        {{1}, {2, kCool}, "!!!!"},
        {{2, kCool}, {5, kCool}, "===="},
        {{2, kCool}, {7, kCool}, "===="},
        {{2, kCool}, {5, kCool, 0.6f}, "!!!!"},
        {{2, kCool}, {7, kCool, 0, kSplit}, "!!!!"},
        {{2, kCool}, {5, kCool, 0, {}, {}, 0}, "=!=="},
        {{2, kCool}, {5, kCool, 0, {}, {}, 1, 2}, "=!=="},
        {{7, {}, 0, kSplit}, {7, {}, 0, kSplit, {}, 1, 2}, "=!=="},
        {{2, kCool}, {3, kCool, 0, {}, line}, "=!=!"},
        {{3, kCool, 0, {}, other}, {4, kCool, 0, {}, other}, "===="},
        {{3, kCool, 0, {}, other}, {6, kCool, 0, {}, other}, "===="},
        {{4, kCool, 0.6f, {}, line}, {5, kCool, 0.6f}, "=!=!"},
        {{6, kCool, 0, {}, line}, {6, kCool, 0, kSplit, line}, "!!!!"},
    };
    for (size_t i = 0; i < 4 * std::size(pairs); ++i) {
        const Pair& p = pairs[i / 4];
        const auto ramp = [&](const Ask& ask) {
            return converted(ask.from(profile, i / 2 % 2, 1 + i % 2).get(), lightnesses());
        };
        EXPECT_EQ(ramp(p.left) == ramp(p.right), p.same[i % 4] == '=') << i / 4 << ' ' << i % 4;
    }
}

TEST(GrayForms, RefuseWhatIsMissing) {
    const OwnedProfile gray = loaded(grayProfile().image()), matrix = loaded(smallRgbProfile());
    for (const int form : {3, 4, 6}) {
        icXform_t x = nullptr;
        EXPECT_EQ(Ask{form}(gray.get(), 0, icPcsToDevice, &x), icErrInvalid) << form;
        EXPECT_EQ(x, nullptr);
        EXPECT_NE(Ask{form}.from(gray, 0, icDeviceToPcs), nullptr);
        EXPECT_NE(Ask{form}.from(matrix, 0, icPcsToDevice), nullptr);
    }
    for (const auto& [points, array] : {std::pair{-1, kSplit.data()}, {1, nullptr}}) {
        icXform_t x = nullptr;
        EXPECT_EQ(icXformGet(gray.get(), icPerceptual, icDeviceToPcs, nullptr, points, array,
                             kSplit.data(), &x),
                  icErrInvalid);
        EXPECT_EQ(
            icXformGet(gray.get(), icPerceptual, icPcsToDevice, nullptr, points, array, &x, 1, 0),
            icErrInvalid);
        EXPECT_EQ(x, nullptr);
    }
}

TEST(GrayXforms, DescribeThemselves) {
    for (const bool toDevice : {false, true}) {
        const OwnedXform x = requested(grayProfile(), 1, toDevice ? icPcsToDevice : icDeviceToPcs);
        const icXformDesc_t d = described(x.get());
        EXPECT_EQ(d.kind, fourcc(toDevice ? "LtoK" : "KtoL"));
        EXPECT_EQ(d.inSpace, fourcc(toDevice ? "Lab " : "GRAY"));
        EXPECT_EQ(d.outSpace, fourcc(toDevice ? "GRAY" : "Lab "));
        EXPECT_TRUE(d.inChannels == 3 && d.outChannels == 3);
    }
}

}  // namespace
}  // namespace lumoxa_test
