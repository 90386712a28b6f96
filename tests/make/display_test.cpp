// SPDX-License-Identifier: Apache-2.0
//
// Display profiles against the numbers that they are made from, through conversions.
#include "make/display.h"

#include <cmath>
#include <functional>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/made_profile.h"

namespace lumoxa_test {
namespace {

using lumoxa::Conversion;
using lumoxa::Display;
using lumoxa::makeDisplay;
using lumoxa::Profile;
using lumoxa::ToneCurve;

constexpr uint32_t kVersions[] = {0x02400000, 0x04300000};

std::vector<float> xyzOf(const Profile& display, const std::vector<float>& rgb) {
    return Conversion(display, Profile::named("XYZ"))(rgb);
}

struct Known {
    std::string name;
    Display display;

    friend void PrintTo(const Known& known, std::ostream* out) { *out << known.name; }
};

Display display(Display::Chromaticity red, Display::Chromaticity green, Display::Chromaticity blue,
                Display::Chromaticity white, ToneCurve curve) {
    Display made;
    made.red = red, made.green = green, made.blue = blue, made.white = white;
    made.curve = std::move(curve);
    return made;
}

class MadeDisplay : public testing::TestWithParam<Known> {};

TEST_P(MadeDisplay, HasItsWhiteAndPrimariesOnceTheAdaptationIsUndone) {
    for (const uint32_t version : kVersions) {
        Display description = GetParam().display;
        description.version = version;
        const Profile profile = makeDisplay(description);
        EXPECT_EQ(profile.version(), version);
        const std::vector<float> lab =
            Conversion(profile, Profile::named("Lab"))(std::vector<float>{1, 1, 1});
        EXPECT_NEAR(lab[0], 100, 0.01);
        EXPECT_NEAR(std::hypot(lab[1], lab[2]), 0, 0.01);
        const Bytes chad = tagOf(profile.bytes(), "chad");
        const std::pair<std::vector<float>, Display::Chromaticity> colors[] = {
            {{1, 0, 0}, description.red},
            {{0, 1, 0}, description.green},
            {{0, 0, 1}, description.blue},
            {{1, 1, 1}, description.white}};
        for (const auto& [rgb, xy] : colors) {
            const auto xyz = solved(chad, xyzOf(profile, rgb));
            const double sum = xyz[0] + xyz[1] + xyz[2];
            EXPECT_NEAR(xyz[0] / sum, xy[0], 3e-4) << rgb[0] << rgb[1] << rgb[2];
            EXPECT_NEAR(xyz[1] / sum, xy[1], 3e-4) << rgb[0] << rgb[1] << rgb[2];
        }
    }
}

TEST_P(MadeDisplay, ShowsTheSameColorsInBothVersions) {
    Display description = GetParam().display;
    const Conversion fourth(makeDisplay(description), Profile::named("Lab"));
    description.version = 0x02400000;
    const Conversion second(makeDisplay(description), Profile::named("Lab"));
    for (const std::vector<float>& rgb :
         {std::vector<float>{0.5f, 0.25f, 0.75f}, {0.1f, 0.9f, 0.3f}, {0.02f, 0.02f, 0.02f}}) {
        const std::vector<float> a = fourth(rgb), b = second(rgb);
        EXPECT_NEAR(std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]), 0, 0.02) << rgb[0];
    }
}

INSTANTIATE_TEST_SUITE_P(
    Make, MadeDisplay,
    testing::Values(Known{"sRGB", {}},
                    Known{"DisplayP3", display({0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06},
                                               {0.3127, 0.3290}, ToneCurve::sRGB())},
                    Known{"DCI", display({0.68, 0.32}, {0.265, 0.69}, {0.15, 0.06}, {0.314, 0.351},
                                         ToneCurve::gamma(2.6))},
                    Known{"NTSC1953", display({0.67, 0.33}, {0.21, 0.71}, {0.14, 0.08},
                                              {0.3101, 0.3162}, ToneCurve::gamma(2.2))}),
    [](const auto& info) { return info.param.name; });

TEST(Display, IsSrgbByDefault) {
    const Bytes made = makeDisplay(Display{}).bytes();
    const Bytes known = Profile::named("sRGB").bytes();
    for (const char* name : {"rXYZ", "gXYZ", "bXYZ", "rTRC", "gTRC", "bTRC", "chad", "wtpt"})
        EXPECT_EQ(tagOf(made, name), tagOf(known, name)) << name;
    // As they are printed for primaries of IEC 61966-2-1 that are adapted to D50.
    EXPECT_NEAR(fixedAt(tagOf(made, "rXYZ"), 8), 0.4360, 1e-4);
    EXPECT_NEAR(fixedAt(tagOf(made, "bXYZ"), 16), 0.7139, 2e-4);
}

TEST(Display, LeadsToLinearLightAlongItsCurve) {
    const struct {
        ToneCurve curve;
        float device;
        double light;
    } cases[] = {{ToneCurve::sRGB(), 0.5f, 0.2140411},
                 {ToneCurve::sRGB(), 0.02f, 0.02 / 12.92},
                 {ToneCurve::gamma(2.2), 0.5f, 0.2176376},
                 {ToneCurve::gamma(1.8), 0.25f, 0.0824692},
                 {ToneCurve::table({0, 0.5, 0.5, 1}), 1 / 6.0f, 0.25},
                 {ToneCurve::table({0, 0.5, 0.5, 1}), 0.5f, 0.5}};
    for (const uint32_t version : kVersions) {
        for (const auto& c : cases) {
            Display description;
            description.version = version;
            description.curve = c.curve;
            const std::vector<float> xyz =
                xyzOf(makeDisplay(description), {c.device, c.device, c.device});
            EXPECT_NEAR(xyz[1], c.light, 2e-5) << version << ' ' << c.device;
        }
    }
}

TEST(Display, NamesWhatNoDisplayCanBe) {
    const double nothing = std::nan("");
    const struct {
        std::function<void(Display&)> spoil;
        const char* sentence;
    } cases[] = {
        {[](Display& d) {
             d.green = {0.395, 0.195};
         },
         "on a line"},
        {[](Display& d) { d.red[1] = 0; }, "y = 0"},
        {[](Display& d) {
             d.white = {0.2, 0.45};
         },
         "outside the triangle"},
        {[](Display& d) {
             d.white = {0.7, 0.35};
         },
         "of a white are above 0"},
        {[=](Display& d) { d.blue[0] = nothing; }, "of blue is no number"},
        {[](Display& d) {
             d.red = {1e5, 1e5}, d.green = {-1e5, 1e5}, d.blue = {0, -1e5};
         },
         "no profile can hold"},
        {[](Display& d) { d.curve = ToneCurve::gamma(0); }, "above 0 and below 256"},
        {[](Display& d) { d.curve = ToneCurve::gamma(256); }, "above 0 and below 256"},
        {[](Display& d) { d.curve = ToneCurve::table({1}); }, "2 to 4096 values, not 1"},
        {[](Display& d) { d.curve = ToneCurve::table(std::vector<double>(4097)); }, "not 4097"},
        {[](Display& d) {
             d.curve = ToneCurve::table({0, 0.5, 0.4});
         },
         "value 3 of a tone curve"},
        {[=](Display& d) {
             d.curve = ToneCurve::table({0, nothing});
         },
         "is no number 0..1"},
        {[](Display& d) { d.version = 0x05000000; }, "versions 2.4"},
        {[](Display& d) { d.version = 0x02400000, d.description = "\u00DF"; }, "plain ASCII"},
        {[](Display& d) { d.copyright = "\xC0\x80"; }, "'cprt' is not valid UTF-8"}};
    for (const auto& c : cases) {
        Display description;
        c.spoil(description);
        EXPECT_NE(faultOf([&] { makeDisplay(description); }).find(c.sentence), std::string::npos)
            << c.sentence << ": " << faultOf([&] { makeDisplay(description); });
    }
}

TEST(Display, RefusesRecordsOfAnotherSize) {
    lmx_display record = {};
    lmx_display_init(&record);
    record.size -= 8;
    lmx_fault fault = {};
    fault.size = sizeof fault;
    lmx_profile* out = nullptr;
    EXPECT_EQ(lmx_make_display(&record, &out, &fault), LMX_ERR_INVALID);
    EXPECT_NE(std::string(fault.sentence).find("lmx_display has size"), std::string::npos);
    EXPECT_EQ(lmx_make_display(nullptr, &out, nullptr), LMX_ERR_INVALID);
    EXPECT_EQ(out, nullptr);
}

}  // namespace
}  // namespace lumoxa_test
