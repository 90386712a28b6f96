// SPDX-License-Identifier: Apache-2.0
//
// Gray transforms out of profiles: what the seven forms ask for, and what the printer then prints.
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/gray_asks.h"
#include "tests/support/xforms.h"

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
    Ask ask;
    int steps = 16;
};
const Print kPrints[] = {{{}},
                         {{2, kCool}},
                         {{2, Tone{0, -6}}},
                         {{5, Tone{1, -4}, 0.8f}},
                         {{7, Tone{0, -2}, 0, kSplit}},
                         {{}, 8},
                         {{2, kCool}, 20}};

// By ask and intent.
class Prints : public testing::TestWithParam<std::tuple<Print, uint32_t>> {};

INSTANTIATE_TEST_SUITE_P(Tones, Prints,
                         testing::Combine(testing::ValuesIn(kPrints), testing::Values(0, 1)));

// The curves start at bare paper and end at bare black, so the tone sets in at the first step and
// ends at the last; between them it is there where the toners can make it.
TEST_P(Prints, MissTheTone) {
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

TEST(PrintsByACurve, HaveAnotherLightness) {
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
TEST(PrintsOfARamp, MissTheDarkestTone) {
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

TEST(GrayForms, LoseTheirParameters) {
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

TEST(GrayForms, TakeWhatIsMissing) {
    const OwnedProfile gray = loaded(grayProfile().image()), matrix = loaded(smallRgbProfile());
    const auto code = [](const OwnedProfile& profile, uint32_t direction, const Ask& ask) {
        icXform_t out = nullptr;
        const int result = ask(profile.get(), 0, direction, &out);
        EXPECT_EQ(result == 0, OwnedXform(out) != nullptr);
        return result;
    };
    for (const int form : {3, 4, 6}) {
        EXPECT_EQ(code(gray, icPcsToDevice, {form}), icErrInvalid) << form;
        EXPECT_EQ(code(gray, icDeviceToPcs, {form}), 0) << form;
        EXPECT_EQ(code(matrix, icPcsToDevice, {form}), 0) << form;
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

TEST(GrayXforms, DescribeThemselvesWrongly) {
    const OwnedProfile profile = loaded(grayProfile().image());
    for (const bool toDevice : {false, true}) {
        const OwnedXform xform = Ask{}.from(profile, 1, toDevice ? icPcsToDevice : icDeviceToPcs);
        const icXformDesc_t d = described(xform.get());
        EXPECT_EQ(d.kind, fourcc(toDevice ? "LtoK" : "KtoL"));
        EXPECT_EQ(d.inSpace, fourcc(toDevice ? "Lab " : "GRAY"));
        EXPECT_EQ(d.outSpace, fourcc(toDevice ? "GRAY" : "Lab "));
        EXPECT_EQ(d.inChannels * 10 + d.outChannels, 33U);
    }
}

TEST(GrayXforms, DisturbThoseOfAnotherThread) {
    const OwnedProfile coarse = loaded(grayProfile().image()),
                       fine = loaded(grayProfile(9, 8).image());
    const auto print = [](const OwnedProfile& profile, Samples& out) {
        out = converted(Ask{2, kCool}.from(profile, 0, icPcsToDevice).get(), lightnesses());
    };
    Samples alone[2], together[2];
    print(coarse, alone[0]);
    print(fine, alone[1]);
    std::thread other([&] { print(fine, together[1]); });
    print(coarse, together[0]);
    other.join();
    EXPECT_EQ(together[0], alone[0]);
    EXPECT_EQ(together[1], alone[1]);
}

}  // namespace
}  // namespace lumoxa_test
