// SPDX-License-Identifier: Apache-2.0
//
// Gray transforms out of profiles: what the seven forms ask for, and what the printer then prints.
#include <gtest/gtest.h>

#include "tests/support/gray_asks.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

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
    uint32_t intent;
    Ask ask;
    int steps = 16;
};

/// Where on the L* axis the printer has the tone that an ask wants.
class Reach {
  public:
    // Curves start at bare paper and end at bare black: the tone sets in at the first step, and
    // ends at the last.
    Reach(const InkPrinter& printer, const Print& print) {
        constexpr int kPlaces = 33;
        const double first = 65535.0 / (print.steps + 1), range = first * (print.steps - 1);
        for (int i = 0; i < kPlaces; ++i) {
            const double black = first + range * i / (kPlaces - 1);
            const auto tone = [&](double L) { return print.ask.at(L); };
            const Triple lab = nearestTone(printer, black, tone);
            places_.emplace_back(lab[0], toneDistance(lab, tone(lab[0])) < 0.05);
        }
    }
    bool has(double L) const {
        for (size_t i = 1; i < places_.size(); ++i) {
            if (L <= places_[i - 1].first && L >= places_[i].first)
                return places_[i - 1].second && places_[i].second;
        }
        return false;
    }

  private:
    std::vector<std::pair<double, bool>> places_;  // L*, falling
};

class Prints : public testing::TestWithParam<Print> {};

TEST_P(Prints, MissTheTone) {
    const Print& print = GetParam();
    const InkPrinter printer;
    const OwnedProfile profile = loaded(grayProfile(5, print.steps).image());
    const OwnedXform toDevice = print.ask.from(profile, print.intent, icPcsToDevice);
    const OwnedXform toLab = print.ask.from(profile, print.intent, icDeviceToPcs);
    const Samples wanted = lightnesses(), device = converted(toDevice.get(), wanted);
    const Samples back = converted(toLab.get(), device);
    const Reach reach(printer, print);
    double sum = 0, largest = 0, before = -1;
    int count = 0;
    for (size_t i = 0; i < device.size(); i += 3) {
        const Triple lab = printer.lab(printer.xyz(device[i], device[i + 1], device[i + 2]));
        // Between the last step and black, plenty of toner on nearly full black prints darker than
        // black alone, and no patch says so.
        const double slack = device[i] > 65535 - 65535 / (print.steps + 1) ? 0.25 : 0;
        EXPECT_TRUE(print.intent == 1 || lab[0] >= before - slack) << i / 3;
        before = lab[0];
        const double L = print.intent == 0 ? lab[0] : wanted[i] / 652.8;
        if (!reach.has(L)) continue;
        const Tone tone = print.ask.at(L);
        const double error = labDistance(lab, {L, tone.a, tone.b});
        sum += error, largest = std::max(largest, error), ++count;
        EXPECT_LT(labDistance(decodedLab(back[i], back[i + 1], back[i + 2]), lab), 1.5) << i / 3;
    }
    ASSERT_GT(count, 120);
    RecordProperty("mean", std::to_string(sum / count));
    RecordProperty("largest", std::to_string(largest));
    EXPECT_LT(sum / count, 0.5);
    EXPECT_LT(largest, 1.5);
}

std::vector<Print> prints() {
    const Ask neutral, cool{2, kCool}, cold{2, Tone{0, -6}}, faded{5, Tone{1, -4}, 0.8f};
    const Ask split{7, Tone{0, -2}, 0, kSplit};
    return {{"neutralPerceptual", 0, neutral},  {"neutral", 1, neutral},
            {"coolPerceptual", 0, cool},        {"cool", 1, cool},
            {"coldPerceptual", 0, cold},        {"cold", 1, cold},
            {"fadedPerceptual", 0, faded},      {"faded", 1, faded},
            {"splitPerceptual", 0, split},      {"split", 1, split},
            {"neutralOf8Steps", 1, neutral, 8}, {"coolOf20Steps", 1, cool, 20}};
}

INSTANTIATE_TEST_SUITE_P(Tones, Prints, testing::ValuesIn(prints()),
                         [](const auto& info) { return std::string(info.param.name); });

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

struct Pair {
    Ask left, right;
    std::vector<uint32_t> intents, directions;
    bool equal;
};

TEST(GrayForms, LoseTheirParameters) {
    const OwnedProfile profile = loaded(grayProfile().image());
    const Floats same = toneCurve(0, 1), other = toneCurve(0.3, 0.9);
    const Pair pairs[] = {
        {{1}, {2}, {0, 1}, {1, 2}, true},
        {{1}, {2, Tone{0, 0}}, {0, 1}, {1, 2}, true},
        {{1}, {2, kCool}, {0, 1}, {1, 2}, false},
        {{2, kCool}, {5, kCool}, {0, 1}, {1, 2}, true},
        {{2, kCool}, {7, kCool}, {0, 1}, {1, 2}, true},
        {{2, kCool}, {5, kCool, 0.6f}, {0, 1}, {1, 2}, false},
        {{2, kCool}, {7, kCool, 0, kSplit}, {0, 1}, {1, 2}, false},
        {{2, kCool}, {5, kCool, 0, {}, {}, 0}, {0}, {2}, false},
        {{2, kCool}, {5, kCool, 0, {}, {}, 0}, {1}, {2}, true},
        {{2, kCool}, {5, kCool, 0, {}, {}, 1, 2}, {0}, {2}, false},
        {{2, kCool}, {5, kCool, 0, {}, {}, 1, 2}, {1}, {2}, true},
        {{7, {}, 0, kSplit}, {7, {}, 0, kSplit, {}, 0}, {0}, {2}, false},
        {{7, {}, 0, kSplit}, {7, {}, 0, kSplit, {}, 0}, {1}, {2}, true},
        {{7, {}, 0, kSplit}, {7, {}, 0, kSplit, {}, 1, 2}, {0}, {2}, false},
        {{2, kCool}, {3, kCool, 0, {}, same}, {0, 1}, {2}, false},
        {{3, kCool, 0, {}, same}, {3, kCool, 0, {}, other}, {0, 1}, {2}, false},
        {{3, kCool, 0, {}, same}, {4, kCool, 0, {}, same}, {0, 1}, {1, 2}, true},
        {{4, kCool, 0, {}, same}, {4, kCool, 0.6f, {}, same}, {0, 1}, {1, 2}, false},
        {{3, kCool, 0, {}, other}, {4, kCool, 0, {}, other}, {0, 1}, {2}, true},
        {{3, kCool, 0, {}, other}, {6, kCool, 0, {}, other}, {0, 1}, {1, 2}, true},
        {{6, kCool, 0, {}, same}, {6, kCool, 0, kSplit, same}, {0, 1}, {1, 2}, false},
        {{2, kCool}, {3, kCool}, {0, 1}, {1}, true},
        {{5, kCool, 0.6f}, {4, kCool, 0.6f}, {0, 1}, {1}, true},
        {{7, kCool, 0, kSplit}, {6, kCool, 0, kSplit}, {0, 1}, {1}, true},
    };
    for (size_t i = 0; i < std::size(pairs); ++i) {
        const Pair& p = pairs[i];
        for (const uint32_t intent : p.intents) {
            for (const uint32_t direction : p.directions) {
                const auto ramp = [&](const Ask& ask) {
                    return converted(ask.from(profile, intent, direction).get(), lightnesses());
                };
                EXPECT_EQ(ramp(p.left) == ramp(p.right), p.equal)
                    << i << " intent " << intent << " direction " << direction;
            }
        }
    }
    // Black is cut off, as without a curve, and only the smoothing is missing.
    const Samples smooth = converted(Ask{2, kCool}.from(profile, 1, 2).get(), lightnesses());
    const Samples rough =
        converted(Ask{3, kCool, 0, {}, same}.from(profile, 1, 2).get(), lightnesses());
    EXPECT_GT(largestDifference(smooth, rough), 0);
    for (size_t i = 0; i < smooth.size(); i += 3)
        EXPECT_NEAR(smooth[i], rough[i], 0.01 * 65535) << i;
}

TEST(GrayForms, TakeWhatIsMissing) {
    const OwnedProfile gray = loaded(grayProfile().image());
    const OwnedProfile matrix = loaded(smallRgbProfile());
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
    const Floats curve = toneCurve(0, 1);
    for (const uint32_t direction : {icDeviceToPcs, icPcsToDevice}) {
        const icRenderingIntent intent{0};
        const icTransType type{direction};
        for (const auto& [points, array, expected] : {std::tuple{-1, kSplit.data(), icErrInvalid},
                                                      {1, nullptr, icErrInvalid},
                                                      {0, nullptr, 0},
                                                      {3, kSplit.data(), 0}}) {
            icXform_t a = nullptr, b = nullptr;
            EXPECT_EQ(
                icXformGet(gray.get(), intent, type, nullptr, points, array, curve.data(), &a),
                expected);
            EXPECT_EQ(icXformGet(gray.get(), intent, type, nullptr, points, array, &b, 1, 0),
                      expected);
            EXPECT_EQ(OwnedXform(a) != nullptr, expected == 0);
            EXPECT_EQ(OwnedXform(b) != nullptr, expected == 0);
        }
    }
}

TEST(GrayXforms, DescribeThemselvesWrongly) {
    const OwnedProfile profile = loaded(grayProfile().image());
    for (const uint32_t direction : {icDeviceToPcs, icPcsToDevice}) {
        const OwnedXform xform = Ask{}.from(profile, 1, direction);
        const icXformDesc_t d = described(xform.get());
        const bool toDevice = direction == icPcsToDevice;
        EXPECT_EQ(d.kind, toDevice ? 0x4c746f4bU : 0x4b746f4cU);
        EXPECT_EQ(d.inSpace, fourcc(toDevice ? "Lab " : "GRAY"));
        EXPECT_EQ(d.outSpace, fourcc(toDevice ? "GRAY" : "Lab "));
        EXPECT_EQ(d.inChannels, 3U);
        EXPECT_EQ(d.outChannels, 3U);
        EXPECT_EQ(d.intent, 1U);
        EXPECT_EQ(d.transType, direction);
        const auto& state = *static_cast<const GrayConv_t*>(xform->state);
        EXPECT_NEAR(state.samples[1], InkPrinter().patches(5, 16)[0][1], 1e-4);
    }
}

}  // namespace
}  // namespace lumoxa_test
