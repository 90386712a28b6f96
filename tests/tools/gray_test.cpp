// SPDX-License-Identifier: Apache-2.0
//
// Gray profiles made from the patches of a printer model, and what prints on it look like.
#include <algorithm>
#include <cmath>
#include <random>
#include <sstream>

#include "tests/support/ink_printer.h"
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
    Result make(const Lines& lines, const std::string& options = "") const {
        std::string text = "# a chart\n\n";
        for (const std::string& line : lines)
            text += line + "\r\n";
        save("patches.csv", text);
        return run("make-gray patches.csv -o gray.icc" + options);
    }
    void makeWhole() const { ASSERT_EQ(make(gridLines()).exitCode, 0); }
    Bytes grayTag() const { return tag("wzgd", "gray.icc"); }
    // Lab of the prints of 16-bit sRGB grays.
    std::vector<Triple> prints(const std::string& grays, const std::string& options = "") const {
        const Samples inks = values("--from sRGB --to gray.icc -16" + options, grays);
        const InkPrinter printer;
        std::vector<Triple> labs;
        for (size_t i = 0; i < inks.size(); i += 3)
            labs.push_back(printer.lab(printer.xyz(inks[i], inks[i + 1], inks[i + 2])));
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

TEST_F(GrayTool, ReportTellsWhatWasMadeAndTheFileIsValid) {
    const Result made = make(gridLines());
    ASSERT_EQ(made.exitCode, 0) << made.err;
    for (const char* part : {"16 steps of 5 x 5 companions", "L* range", "tone error  mean 0."})
        EXPECT_NE(made.out.find(part), std::string::npos) << part << " in\n" << made.out;
    EXPECT_TRUE(made.err.empty()) << made.err;
    const Bytes profile = bytes("gray.icc");
    EXPECT_EQ(number(profile, 0), profile.size());
    EXPECT_NE(run("info gray.icc").out.find("violations of ICC.1: none found"), std::string::npos);
    EXPECT_EQ(make(gridLines(), " --description \u00DF").exitCode, 2);
}

TEST_F(GrayTool, PrintsHaveTheToneThatIsAskedFor) {
    makeWhole();
    const struct {
        const char* options;
        double gray, a, b;  // 16-bit sRGB, Lab of its print
    } cases[] = {{" --tone -3,-3", 30000, -3, -3},
                 {" --split-tone 40:0,0;90:0,-6", 28000, 0, -1},
                 {" --split-tone 40:0,2;90:0,-4 --tone 0,-2", 50000, 0, -4.6},
                 {" --tone 0,-6 --fade 1", 50000, 0, -4.0}};  // L* 78.6: 1 - 0.572^2 of the tone
    for (const auto& c : cases) {
        const Triple lab = prints(gray(c.gray), c.options).at(0);
        EXPECT_NEAR(lab[1], c.a, 0.5) << c.options;
        EXPECT_NEAR(lab[2], c.b, 0.7) << c.options;
    }
}

TEST_F(GrayTool, ShapingActsOnPerceptualTones) {
    makeWhole();
    const auto lightnessWith = [&](const std::string& options) {
        return prints(gray(20000), " --intent perceptual" + options).at(0)[0];
    };
    EXPECT_GT(lightnessWith(" --no-shape"), lightnessWith("") + 1);
    EXPECT_LT(lightnessWith(" --shape 0.3"), lightnessWith(" --shape 0") - 0.2);
}

TEST_F(GrayTool, EveryFormOfATableMakesTheSameTag) {
    makeWhole();
    const Bytes plain = grayTag();
    ASSERT_EQ(plain.size(), 12 + 12 * (16 * 25 + 2));
    const std::pair<Form, const char*> forms[] = {{{',', 65535, 1, true}, " --range 65535"},
                                                  {{';', 255, 100, false}, " --range 255"},
                                                  {{'\t', 65535, 100, true}, " --range 65535"}};
    for (const auto& [form, range] : forms) {
        EXPECT_EQ(make(gridLines(form), range).exitCode, 0);
        EXPECT_TRUE(grayTag() == plain) << range << form.separator;
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
    ASSERT_EQ(make(lines, " --range 100").exitCode, 0);
    const Bytes ramp = grayTag();
    ASSERT_EQ(ramp.size(), 12 + 12 * 9u);
    const double blackest = ramp[114] * 256 + ramp[115];  // Y of the last patch, below 1
    EXPECT_NEAR(blackest, 65536 * printer.xyz(65535, 0, 0)[1], 1);
    const Samples inks = values("--from sRGB --to gray.icc -16", "30000,30000,30000");
    EXPECT_NEAR(printer.lab(printer.xyz(inks[0], 0, 0))[0], lightness(30000), 1);
}

TEST_F(GrayTool, WrongTablesAreRefusedByWhatIsWrong) {
    const Lines whole = gridLines();
    const auto with = [&](size_t at, const std::string& line) {
        Lines lines = whole;
        lines.resize(std::max(at + 1, lines.size()));
        lines[at] = line;
        return lines;
    };
    Lines missing = whole;
    missing.erase(missing.begin() + 27);
    const std::pair<Lines, const char*> tables[] = {
        {missing, "patch main 7710, first 0, second 16384 is missing"},
        {with(403, "0.5,0,16384,0,0.5,0.5"), "main 0, first 0, second 16384 is one too many"},
        {with(1, "-0.1,3855,0,0,0.5,0.5"), "line 4: Z '-0.1' is no number"},
        {with(2, "0.5,0"), "line 5: has 2 fields"},
        {with(2, "0.5,65536,0,0,0.5,0.5"), "is no number 0..65535"},
        {with(402, "0.9,65535,0,0,0.9,0.9"), "not darker than the paper"}};
    for (const auto& [lines, message] : tables) {
        const Result made = make(lines);
        EXPECT_EQ(made.exitCode, 1) << message;
        EXPECT_NE(made.err.find(message), std::string::npos) << made.err;
        EXPECT_FALSE(exists("gray.icc"));
    }
}

TEST_F(GrayTool, WhatAGrayDeviceCannotDoIsRefused) {
    makeWhole();
    Bytes other = bytes("gray.icc");
    put32(other, 20, signature("XYZ "));
    save("other.icc", other);
    const std::string values = "values --from sRGB --to gray.icc ";
    expectComplaints({{values + "--tone 0,200", 2, "outside -127..127"},
                      {values + "--split-tone 50:1,1;50:2,2", 2, "rise"},
                      {values + "--split-tone 5:1,1 --fade 1", 2, "excludes"},
                      {"values --from sRGB --to other.icc 1,2,3", 1, "lead to Lab"},
                      {"link sRGB gray.icc -o link.icc", 1, "can't be held"}});
}

}  // namespace
