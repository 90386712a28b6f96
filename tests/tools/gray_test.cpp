// SPDX-License-Identifier: Apache-2.0
//
// Gray profiles made from the patches of a printer model, and what prints on it look like.
#include <algorithm>
#include <cmath>
#include <functional>
#include <iomanip>
#include <random>
#include <sstream>

#include <gtest/gtest.h>
#include <vips/vips.h>

#include "tests/support/ink_printer.h"
#include "tests/support/real_profiles.h"
#include "tests/support/run_tool.h"

namespace {

using namespace lumoxa_test;
using Triple = InkPrinter::Triple;
using Lines = std::vector<std::string>;

// How a table of patches is written.
struct Form {
    char separator = ',';
    double range = 65535, white = 1;
    bool shuffled = false;
};

std::string row(const std::vector<double>& fields, char separator) {
    std::ostringstream text;
    text.precision(12);
    for (size_t i = 0; i < fields.size(); ++i)
        text << (i == 0 ? "" : std::string(1, separator)) << fields[i];
    return text.str();
}

constexpr int kPoints = 5, kSteps = 16;

// Header and patches: 5 x 5 companions on 16 steps, paper, black.
Lines gridLines(const Form& form = {}) {
    const auto device = [&](int i, int gaps) { return std::round(form.range * i / gaps); };
    std::vector<std::array<double, 3>> channels;
    for (int s = 1; s <= kSteps; ++s)
        for (int j = 0; j < kPoints; ++j)
            for (int k = 0; k < kPoints; ++k)
                channels.push_back(
                    {device(s, kSteps + 1), device(j, kPoints - 1), device(k, kPoints - 1)});
    channels.push_back({0, 0, 0});
    channels.push_back({form.range, 0, 0});
    const std::vector<Triple> patches = InkPrinter().patches(kPoints, kSteps);
    Lines lines;
    for (size_t i = 0; i < patches.size(); ++i)
        lines.push_back(
            row({patches[i][2] * form.white, channels[i][0], channels[i][2], channels[i][1],
                 patches[i][0] * form.white, patches[i][1] * form.white},
                form.separator));
    if (form.shuffled) std::shuffle(lines.begin(), lines.end(), std::mt19937(7));
    std::string header = "Z,main,second,first,X,Y";
    std::replace(header.begin(), header.end(), ',', form.separator);
    lines.insert(lines.begin(), header);
    return lines;
}

class GrayTool : public ToolRun {
  protected:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("gray_test"), 0);
        ToolRun::SetUp();
    }
    Result make(const Lines& lines, std::vector<std::string> options = {}) const {
        std::string text = "# a chart\n\n";
        for (const std::string& line : lines)
            text += line + "\r\n";
        save("patches.csv", Bytes(text.begin(), text.end()));
        options.insert(options.begin(), {"make-gray", path("patches.csv"), "-o", path("gray.icc")});
        return run(options);
    }
    // 256 grays as an RGB image.
    void saveRamp() const {
        VipsImage *ramp = nullptr, *image = nullptr;
        ASSERT_EQ(vips_identity(&ramp, "bands", 3, nullptr), 0);
        ASSERT_EQ(vips_copy(ramp, &image, "interpretation", VIPS_INTERPRETATION_sRGB, nullptr), 0);
        ASSERT_EQ(vips_image_write_to_file(image, path("in.png").c_str(), nullptr), 0);
        g_object_unref(ramp);
        g_object_unref(image);
    }
    std::vector<double> pixel(const std::string& name, int x) const {
        VipsImage* const image = vips_image_new_from_file(path(name).c_str(), nullptr);
        double* values = nullptr;
        int bands = 0;
        EXPECT_EQ(vips_getpoint(image, &values, &bands, x, 0, nullptr), 0);
        EXPECT_EQ(vips_image_get_typeof(image, VIPS_META_ICC_NAME) == 0, name.ends_with(".tif"));
        const std::vector<double> copy(values, values + bands);
        g_free(values);
        g_object_unref(image);
        return copy;
    }
    // The gray tag, which is the fourth.
    Bytes tag() const {
        constexpr size_t kRow = 132 + 3 * 12;
        const Bytes profile = fileBytes(path("gray.icc"));
        const auto field = [&](size_t at) {
            return profile[at + 2] * 256L + profile[at + 3] + profile[at + 1] * 65536L;
        };
        const auto first = profile.begin() + field(kRow + 4);
        return {first, first + field(kRow + 8)};
    }
    std::vector<Triple> triples(const std::string& text) const {
        std::vector<Triple> all;
        std::istringstream in(text);
        char comma = 0;
        for (Triple t; in >> t[0] >> comma >> t[1] >> comma >> t[2];)
            all.push_back(t);
        return all;
    }
    // Lab of the prints of 16-bit sRGB grays.
    std::vector<Triple> prints(const std::string& grays, std::vector<std::string> options) const {
        options.insert(options.begin(),
                       {"values", "--from", "sRGB", "--to", path("gray.icc"), "-16"});
        const Result result = run(options, grays);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        const InkPrinter printer;
        std::vector<Triple> labs;
        for (const Triple& inks : triples(result.out))
            labs.push_back(printer.lab(printer.xyz(inks[0], inks[1], inks[2])));
        return labs;
    }
};

std::string gray(double value) {
    const std::string text = std::to_string(std::lround(value));
    return text + "," + text + "," + text + "\n";
}

double lightness(double value) {
    const double linear = std::pow((value / 65535 + 0.055) / 1.055, 2.4);
    return 116 * std::cbrt(linear) - 16;
}

TEST_F(GrayTool, NeutralRampIsNeutralOnPaper) {
    const Result made = make(gridLines());
    ASSERT_EQ(made.exitCode, 0) << made.err;
    std::ostringstream black;
    black << std::fixed << std::setprecision(1)
          << InkPrinter().lab(InkPrinter().xyz(65535, 0, 0))[0];
    EXPECT_NE(made.out.find("L* range    " + black.str() + " to 100.0"), std::string::npos)
        << made.out;
    EXPECT_NE(made.out.find("clips       L* " + black.str() + " to "), std::string::npos)
        << made.out;
    constexpr int kDarkest = 18000;  // L* 28.5, which the toners can make neutral
    std::string ramp;
    std::vector<double> wanted;
    for (int value = kDarkest; value <= 65535; value += 500) {
        ramp += gray(value);
        wanted.push_back(lightness(value));
    }
    const std::vector<Triple> labs = prints(ramp, {});
    ASSERT_EQ(labs.size(), wanted.size());
    double sum = 0, largest = 0;
    for (size_t i = 0; i < labs.size(); ++i) {
        const double error = std::hypot(labs[i][0] - wanted[i], labs[i][1], labs[i][2]);
        sum += error;
        largest = std::max(largest, error);
    }
    EXPECT_LT(sum / static_cast<double>(labs.size()), 0.5);
    EXPECT_LT(largest, 1.5);
}

struct Toned {
    Lines options;
    double gray;  // 16-bit sRGB
    double a, b;  // of its print
};
void PrintTo(const Toned& toned, std::ostream* out) {
    for (const std::string& option : toned.options)
        *out << option << ' ';
    *out << toned.gray;
}
class TonedPrint : public GrayTool, public testing::WithParamInterface<Toned> {};

TEST_P(TonedPrint, HasTheTone) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    const Triple lab = prints(gray(GetParam().gray), GetParam().options).at(0);
    EXPECT_NEAR(lab[1], GetParam().a, 0.5);
    EXPECT_NEAR(lab[2], GetParam().b, 0.7);
}

INSTANTIATE_TEST_SUITE_P(
    Tones, TonedPrint,
    testing::Values(Toned{{"--tone", "0,-6"}, 30000, 0, -6},
                    Toned{{"--tone", "0,-6"}, 50000, 0, -6},
                    Toned{{"--tone", "-3,-3"}, 30000, -3, -3},
                    Toned{{"--split-tone", "40:0,0;90:0,-6"}, 28000, 0, -1},
                    Toned{{"--split-tone", "40:0,0;90:0,-6"}, 50000, 0, -4.6},
                    Toned{{"--split-tone", "40:0,2;90:0,-4", "--tone", "0,-2"}, 50000, 0, -4.6},
                    // L* 78.6: 1 - 0.572^2 of the tone
                    Toned{{"--tone", "0,-6", "--fade", "1"}, 50000, 0, -4.0}));

TEST_F(GrayTool, ShapingActsOnPerceptualTones) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    const auto lightnessWith = [&](Lines options) {
        options.insert(options.end(), {"--intent", "perceptual"});
        return prints(gray(20000), options).at(0)[0];
    };
    EXPECT_GT(lightnessWith({"--no-shape"}), lightnessWith({}) + 1);
    EXPECT_LT(lightnessWith({"--shape", "0.3"}), lightnessWith({"--shape", "0"}) - 0.2);
    EXPECT_EQ(lightnessWith({"--shape", "0"}), lightnessWith({}));
}

TEST_F(GrayTool, EveryFormOfATableMakesTheSameTag) {
    ASSERT_EQ(make(gridLines()).exitCode, 0);
    const Bytes plain = tag();
    ASSERT_EQ(plain.size(), 12 + 12 * (16 * 25 + 2));
    const std::pair<Form, const char*> forms[] = {{{',', 65535, 1, true}, "65535"},
                                                  {{';', 255, 100, false}, "255"},
                                                  {{'\t', 65535, 100, true}, "65535"}};
    for (const auto& [form, range] : forms) {
        Lines lines = gridLines(form);
        const Result made = make(lines, {"--range", range});
        EXPECT_EQ(made.exitCode, 0) << made.err;
        EXPECT_TRUE(tag() == plain) << range << form.separator;
    }
}

TEST_F(GrayTool, TableOfOneChannelIsARamp) {
    Lines lines = {"main,X,Y,Z"};
    const InkPrinter printer;
    for (int i = 0; i <= 8; ++i) {
        const Triple xyz = printer.xyz(65535.0 * i / 8, 0, 0);
        for (const double error : {-0.01, 0.01})  // measured twice
            lines.push_back(row({12.5 * i, xyz[0], xyz[1] + error, xyz[2]}, ','));
    }
    const Result made = make(lines, {"--range", "100"});
    ASSERT_EQ(made.exitCode, 0) << made.err;
    const Bytes ramp = tag();
    ASSERT_EQ(ramp.size(), 12 + 12 * 9u);
    EXPECT_EQ(Bytes(ramp.begin() + 8, ramp.begin() + 12), (Bytes{0, 9, 16, 2}));
    const double blackest = ramp[114] * 256 + ramp[115];  // Y of the last patch, below 1
    EXPECT_NEAR(blackest, 65536 * printer.xyz(65535, 0, 0)[1], 1);
    const Result values =
        run({"values", "--from", "sRGB", "--to", path("gray.icc"), "-16", "30000,30000,30000"});
    const Triple inks = triples(values.out).at(0);
    EXPECT_NEAR(inks[0], inks[1], 2);  // tables of their own
    EXPECT_NEAR(printer.lab(printer.xyz(inks[0], 0, 0))[0], lightness(30000), 1);
}

struct WrongTable {
    const char* name;
    std::function<void(Lines&)> spoil;
    const char* message;
};
void PrintTo(const WrongTable& table, std::ostream* out) {
    *out << table.name;
}
class WrongTables : public GrayTool, public testing::WithParamInterface<WrongTable> {};

TEST_P(WrongTables, AreRefusedByWhatIsWrong) {
    Lines lines = gridLines();
    GetParam().spoil(lines);
    const Result made = make(lines);
    EXPECT_EQ(made.exitCode, 1);
    EXPECT_NE(made.err.find(GetParam().message), std::string::npos) << made.err;
    EXPECT_FALSE(std::filesystem::exists(path("gray.icc")));
}

INSTANTIATE_TEST_SUITE_P(
    Tables, WrongTables,
    testing::Values(WrongTable{"missing", [](Lines& l) { l.erase(l.begin() + 27); },
                               "patch main 7710, first 0, second 16384 is missing"},
                    WrongTable{"no_black", [](Lines& l) { l.pop_back(); },
                               "patch main 65535, first 0, second 0 is missing"},
                    WrongTable{"surplus", [](Lines& l) { l.push_back("0.5,0,16384,0,0.5,0.5"); },
                               "line 406: patch main 0, first 0, second 16384 is one too many"},
                    WrongTable{"uneven", [](Lines& l) { l.push_back("0.5,9000,0,0,0.5,0.5"); },
                               "17 values of main are not even steps"},
                    WrongTable{"negative", [](Lines& l) { l[1] = "-0.1,3855,0,0,0.5,0.5"; },
                               "line 4: Z '-0.1' is no number"},
                    WrongTable{"text", [](Lines& l) { l[2] = "0.5,dark,0,0,0.5,0.5"; },
                               "line 5: main 'dark'"},
                    WrongTable{"short", [](Lines& l) { l[2] = "0.5,0"; }, "line 5: has 2 fields"},
                    WrongTable{"beyond", [](Lines& l) { l[2] = "0.5,65536,0,0,0.5,0.5"; },
                               "is no number 0..65535; correct it, or state the scale"},
                    WrongTable{"no_column", [](Lines& l) { l[0] = "Z,main,second,primary,X,Y"; },
                               "has no column first"},
                    WrongTable{"bright_ink", [](Lines& l) { l.back() = "0.9,65535,0,0,0.9,0.9"; },
                               "not darker than the paper"}),
    [](const auto& info) { return info.param.name; });

TEST_F(GrayTool, PrintFileHoldsThreeChannelsAndLeadsBack) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    saveRamp();
    const auto convert = [&](const std::string& in, const std::string& out, Lines options) {
        options.insert(options.begin(), {"convert", path(in), path(out)});
        const Result result = run(options);
        EXPECT_EQ(result.exitCode, 0) << result.err;
        return result.out + result.err;
    };
    EXPECT_NE(convert("in.png", "16.tif", {"--to", path("gray.icc")}).find("print file of three"),
              std::string::npos);
    convert("in.png", "8.tif", {"--to", path("gray.icc"), "--depth", "8"});
    EXPECT_EQ(pixel("16.tif", 0), (std::vector<double>{65535, 0, 0}));
    EXPECT_EQ(pixel("8.tif", 0), (std::vector<double>{255, 0, 0}));
    for (const std::string depth : {"16", "8"}) {
        convert(depth + ".tif", depth + ".png",
                {"--from", path("gray.icc"), "--to", "sRGB", "--depth", "8"});
        for (int value = 80; value < 256; value += 25)
            EXPECT_NEAR(pixel(depth + ".png", value).at(1), value, 1.5) << depth;
    }
    save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
    convert("in.png", "cmyk.tif", {"--to", path("cmyk.icc")});
    const std::string report = convert("cmyk.tif", "out.tif", {"--to", path("gray.icc")});
    EXPECT_NE(report.find("one after the other, Lab between"), std::string::npos) << report;
}

TEST_F(GrayTool, WhatAGrayDeviceCannotDoIsRefused) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    saveRamp();
    const std::string in = path("in.png"), out = path("out.tif"), profile = path("gray.icc");
    ASSERT_EQ(run({"convert", in, path("rgb.tif"), "--to", "sRGB", "-q"}).exitCode, 0);
    Bytes other = fileBytes(profile);
    constexpr size_t kConnectionSpace = 20;
    std::copy_n("XYZ ", 4, other.begin() + kConnectionSpace);
    save("other.icc", other);
    struct Refusal {
        Lines arguments;
        int exitCode;
        const char* message;
    };
    const Refusal refusals[] = {
        {{"convert", in, path("out.png"), "--to", profile}, 2, "write .tif"},
        {{"convert", in, out + "[compression=jpeg]", "--to", profile}, 2, "device values"},
        {{"convert", in, out, "--to", "sRGB", "--tone", "1,2"}, 2, "is for none"},
        {{"convert", in, out, "--to", profile, "--combine"}, 2, "two steps"},
        {{"values", "--from", "sRGB", "--to", profile, "--tone", "0,200"}, 2, "outside -127..127"},
        {{"values", "--from", "sRGB", "--to", profile, "--fade", "2"}, 2, "outside 0..1"},
        {{"values", "--from", "sRGB", "--to", profile, "--shape", "1"}, 2, "perceptual"},
        {{"values", "--from", "sRGB", "--to", profile, "--split-tone", "50:1,1;50:2,2"}, 2, "rise"},
        {{"values", "--from", "sRGB", "--to", profile, "--split-tone", "5:1,1", "--fade", "1"},
         2,
         "excludes"},
        {{"convert", path("rgb.tif"), out, "--from", profile, "--to", "sRGB"},
         1,
         "leave out --from"},
        {{"values", "--from", "sRGB", "--to", path("other.icc"), "1,2,3"}, 1, "lead to Lab"},
        {{"link", "sRGB", profile, "-o", path("link.icc")}, 1, "can't hold"},
    };
    for (const Refusal& refusal : refusals) {
        const Result result = run(refusal.arguments);
        EXPECT_EQ(result.exitCode, refusal.exitCode) << refusal.message;
        EXPECT_NE(result.err.find(refusal.message), std::string::npos) << result.err;
    }
}

TEST_F(GrayTool, CurveServesSoftwareWithoutTheTag) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    ASSERT_EQ(
        run({"edit", path("gray.icc"), "-o", path("curve.icc"), "--remove-tag", "wzgd"}).exitCode,
        0);
    const auto preview = [&](const char* profile, const char* ink) {
        return triples(run({"values", "--from", path(profile), "--to", "sRGB", ink}).out).at(0)[1];
    };
    EXPECT_EQ(preview("curve.icc", "0"), 255);
    EXPECT_NEAR(preview("curve.icc", "128"), preview("gray.icc", "128,0,0"), 1);
    EXPECT_NEAR(preview("curve.icc", "255"), preview("gray.icc", "255,0,0"), 2);
}

TEST_F(GrayTool, InfoTellsOfPatchesAndKinds) {
    ASSERT_EQ(make(gridLines(), {"-q"}).exitCode, 0);
    const Result info = run({"info", path("gray.icc")});
    for (const char* text : {"grids of 5x5 companions, 16 steps, layout 0", "tables KtoL, GRAY to",
                             "tables LtoK, Lab to", "media white       0.8200 0.8500 0.7200",
                             "violations of ICC.1: none found"})
        EXPECT_NE(info.out.find(text), std::string::npos) << info.out;
}

}  // namespace
