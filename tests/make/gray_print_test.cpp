// SPDX-License-Identifier: Apache-2.0
//
// Gray print profiles from the patches of a printer model, and what prints on it look like.
#include "make/gray_print.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/ink_printer.h"
#include "tests/support/made_profile.h"

namespace lumoxa_test {
namespace {

using lumoxa::GrayPatch;
using lumoxa::GrayPrint;
using lumoxa::grayPrintReport;
using lumoxa::makeGrayPrint;
using lumoxa::Profile;
using Triple = InkPrinter::Triple;
using Patches = std::vector<GrayPatch>;

constexpr int kPoints = 5, kSteps = 16;
constexpr double kFull = 65535;

/// 5 x 5 companions on 16 steps, paper, black; device values are whole numbers.
Patches gridPatches(double range = kFull, double white = 1) {
    const std::vector<Triple> measured = InkPrinter().patches(kPoints, kSteps);
    Patches patches;
    const auto add = [&](double main, double first, double second) {
        const Triple& xyz = measured.at(patches.size());
        patches.push_back({std::round(range * main), std::round(range * first),
                           std::round(range * second), xyz[0] * white, xyz[1] * white,
                           xyz[2] * white});
    };
    for (int s = 1; s <= kSteps; ++s)
        for (int j = 0; j < kPoints; ++j)
            for (int k = 0; k < kPoints; ++k)
                add(s / (kSteps + 1.0), j / (kPoints - 1.0), k / (kPoints - 1.0));
    add(0, 0, 0);
    add(1, 0, 0);
    return patches;
}

/// Main ink alone in even steps.
Patches rampPatches(int count) {
    Patches patches;
    for (int i = 0; i < count; ++i) {
        const double device = kFull * i / (count - 1);
        const Triple xyz = InkPrinter().xyz(device, 0, 0);
        patches.push_back({device, device, device, xyz[0], xyz[1], xyz[2]});
    }
    return patches;
}

Profile made(const Patches& patches, double range = kFull) {
    GrayPrint print;
    print.range = range;
    return makeGrayPrint(patches, print);
}

double numberIn(const std::string& json, const std::string& key) {
    const size_t at = json.find("\"" + key + "\": ");
    EXPECT_NE(at, std::string::npos) << key << json;
    return at == std::string::npos ? -1 : std::stod(json.substr(at + key.size() + 4));
}

TEST(GrayPrint, PrintsNeutralRampsNeutral) {
    lumoxa::Options options;
    options.blackPointCompensation = false;
    const lumoxa::Conversion print(Profile::named("sRGB"), made(gridPatches()), options);
    const InkPrinter printer;
    double sum = 0, largest = 0, count = 0;
    for (int step = 12; step * 1500.0 <= kFull; ++step) {  // from L* 28.5 on
        const double value = step * 1500.0;
        const auto gray = static_cast<float>(value / kFull);
        const std::vector<float> inks = print(std::vector<float>{gray, gray, gray});
        const Triple lab =
            printer.lab(printer.xyz(kFull * inks[0], kFull * inks[1], kFull * inks[2]));
        const double linear = std::pow((value / kFull + 0.055) / 1.055, 2.4);
        const double error = std::hypot(lab[0] - (116 * std::cbrt(linear) - 16), lab[1], lab[2]);
        sum += error, ++count;
        largest = std::max(largest, error);
    }
    EXPECT_LT(sum / count, 0.5);
    EXPECT_LT(largest, 1.5);
}

TEST(GrayPrint, IsTheSameFromPatchesInAnyOrderAndScale) {
    const Bytes plain = tagOf(made(gridPatches()).bytes(), "wzgd");
    ASSERT_EQ(plain.size(), 12 + 12 * (kSteps * 25 + 2U));
    Patches shuffled = gridPatches(255, 100);
    std::shuffle(shuffled.begin(), shuffled.end(), std::mt19937(7));
    EXPECT_EQ(tagOf(made(shuffled, 255).bytes(), "wzgd"), plain);
    Patches twice;
    for (GrayPatch patch : gridPatches()) {
        for (const double error : {-0.01, 0.02}) {
            patch.Y += error;
            twice.push_back(patch);
        }
    }
    EXPECT_EQ(tagOf(made(twice).bytes(), "wzgd"), plain);
}

TEST(GrayPrint, CurveServesSoftwareWithoutThePatches) {
    const Profile whole = made(gridPatches());
    const Profile curve = whole.without(LMX_SIGNATURE('w', 'z', 'g', 'd'));
    EXPECT_EQ(whole.channels(), 3);
    EXPECT_EQ(curve.channels(), 1);
    const lumoxa::Conversion patches(whole, Profile::named("Lab")),
        single(curve, Profile::named("Lab"));
    for (const float main : {0.0f, 0.25f, 0.5f, 1.0f}) {
        EXPECT_NEAR(single(std::vector<float>{main})[0], patches(std::vector<float>{main, 0, 0})[0],
                    0.5)
            << main;
    }
}

TEST(GrayPrint, ReportTellsLayoutAndNeutrality) {
    const double black = InkPrinter().lab(InkPrinter().xyz(kFull, 0, 0))[0];
    const std::string grids = grayPrintReport(made(gridPatches()));
    EXPECT_NE(grids.find("\"layout\": \"grids\""), std::string::npos);
    EXPECT_EQ(numberIn(grids, "points"), kPoints);
    EXPECT_EQ(numberIn(grids, "steps"), kSteps);
    EXPECT_NEAR(numberIn(grids, "black"), black, 0.1);
    EXPECT_NEAR(numberIn(grids, "paper"), 100, 0.01);
    EXPECT_LT(numberIn(grids, "mean"), 0.5);
    const std::string ramp = grayPrintReport(made(rampPatches(9)));
    EXPECT_NE(ramp.find("\"layout\": \"ramp\""), std::string::npos);
    EXPECT_EQ(numberIn(ramp, "points"), 9);
    EXPECT_GT(numberIn(ramp, "mean"), numberIn(grids, "mean"));
    EXPECT_GT(numberIn(ramp, "light"), numberIn(grids, "light"));
}

TEST(GrayPrint, ReportRefusesOtherProfiles) {
    EXPECT_NE(faultOf([] { grayPrintReport(Profile::named("gray")); }).find("'wzgd'"),
              std::string::npos);
    Bytes bytes = made(rampPatches(9)).bytes();
    const Bytes tag = tagOf(bytes, "wzgd");
    const auto at = std::search(bytes.begin(), bytes.end(), tag.begin(), tag.end());
    std::fill(at + 12, at + static_cast<ptrdiff_t>(tag.size()), uint8_t{0});  // a black paper
    EXPECT_NE(faultOf([&] {
                  grayPrintReport(Profile::fromBytes(bytes.data(), bytes.size()));
              }).find("no tones can be fitted"),
              std::string::npos);
}

TEST(GrayPrint, NamesThePatchAtFault) {
    const struct {
        std::function<void(Patches&)> spoil;
        const char* sentence;
    } cases[] = {
        {[](Patches& p) { p.clear(); }, "there are no patches"},
        {[](Patches& p) { p.erase(p.begin() + 27); },
         "patch main 7710, first 0, second 32768 is missing"},
        {[](Patches& p) {
             p.push_back({0, 0, 16384, 0.5, 0.5, 0.5});
         },
         "patch main 0, first 0, second 16384 is one too many: with main 0 and 65535"},
        {[](Patches& p) { p[2].main = 65536; }, "patch 3 has main 65536, which is no number"},
        {[](Patches& p) { p[0].Z = -0.1; }, "patch 1 has Z -0.1"},
        {[](Patches& p) { p[1].X = std::nan(""); }, "patch 2 has X"},
        {[](Patches& p) { p.pop_back(); }, "main 65535, first 0, second 0 is missing"},
        {[](Patches& p) { p.back().Y = 0.9; }, "not darker than the paper"},
        {[](Patches& p) { p[400].Z = 0; }, "the paper reflects nothing"},
        {[](Patches& p) { p[7].X = 3; }, "twice a perfect white"},
        {[](Patches& p) { p.erase(p.begin(), p.begin() + 400); }, "no grids of companions"},
        {[](Patches& p) { p = rampPatches(9), p[4].main = p[4].first = p[4].second = 33500; },
         "values of main are not even steps: one is 33500, not 32767.5"},
        {[](Patches& p) { p = rampPatches(9), p.pop_back(); }, "patch main 65535 is missing"}};
    for (const auto& c : cases) {
        Patches patches = gridPatches();
        c.spoil(patches);
        const std::string sentence = faultOf([&] { made(patches); });
        EXPECT_NE(sentence.find(c.sentence), std::string::npos) << c.sentence << ": " << sentence;
    }
    EXPECT_NE(faultOf([] { made(gridPatches(), 0); }).find("full ink"), std::string::npos);
}

}  // namespace
}  // namespace lumoxa_test
