// SPDX-License-Identifier: Apache-2.0
//
// Device links: made by the tool, looked into, and used by it in place of the chains.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "tests/support/run_tool.h"
#include "tests/support/seeded_random.h"

namespace {

using namespace lumoxa_test;

class LinkTool : public ToolRun {
  protected:
    void SetUp() override {
        ToolRun::SetUp();
        save("wide.icc", realProfile("colord/AdobeRGB1998.icc"));
        save("cmyk.icc", realProfile("ghostscript/default_cmyk.icc"));
        save("gray.icc", realProfile("icc/Gray-CIE_L.icc"));
    }
    Samples linked(const std::string& name, const std::string& input) const {
        return values("--link " + name, input);
    }
};

// Colours as lines of text.
std::string lines(const Samples& samples, size_t channels) {
    std::string text;
    for (size_t i = 0; i < samples.size(); ++i)
        text += std::to_string(samples[i]) + ((i + 1) % channels == 0 ? "\n" : ",");
    return text;
}

std::string randomLines(size_t channels, uint32_t top) {
    return lines(SeededRandom(20).samples(3000 * channels, top), channels);
}

// The table between two profiles without one has to come near what they give without it. Where a
// gamut is cut off, the steps of its darkest channel are far below what shows: hence colours.
TEST_F(LinkTool, TableBetweenProfilesWithoutOneIsFine) {
    const Bytes halfWhite = xyzTag(0.9642 / 2, 0.5, 0.8249 / 2);
    save("dim.icc", rgbProfile({curveTag({563})}, "scnr").addTag("wtpt", halfWhite).image());
    const std::string colours = lines(SeededRandom(20).samples(3 * 300, 65535), 3);
    const std::pair<std::string, std::string> pairs[] = {
        {"wide.icc", "sRGB"}, {"dim.icc", "sRGB"}, {"sRGB", "dim.icc"}};
    for (const auto& [from, to] : pairs) {
        done("link " + from + " " + to + " -o link.icc --intent absolute");
        const auto labOf = [&, target = to](const std::string& options) {
            const Samples device = values(options + " -16", colours);
            return values("--from " + target + " --to Lab -16", lines(device, 3));
        };
        const Samples linked = labOf("--link link.icc");
        const Samples exact = labOf("--intent absolute --from " + from + " --to " + to);
        double sum = 0, largest = 0;
        for (size_t i = 0; i < exact.size(); i += 3) {
            const auto d = [&](size_t c) { return double(linked[i + c]) - exact[i + c]; };
            const double deltaE = std::hypot(d(0) / 655.35, d(1) / 257, d(2) / 257);
            sum += deltaE;
            largest = std::max(largest, deltaE);
        }
        EXPECT_LT(sum / 300, 0.1) << from << to;
        EXPECT_LT(largest, 0.7) << from << to;
    }
}

TEST_F(LinkTool, ProfileSaysWhatItWasMadeFrom) {
    Bytes press = realProfile("ghostscript/default_cmyk.icc");
    put32(press, 48, signature("ABCD"));  // the maker
    save("press.icc", press);
    done("link sRGB press.icc -o link.icc --intent absolute -q");
    const OwnedProfile link = loaded(bytes("link.icc"));
    icHeader header = {};
    ASSERT_EQ(icProfileGetHeader(link.get(), &header), 0);
    EXPECT_EQ(header.deviceClass, signature("link"));
    EXPECT_EQ(header.colorSpace, signature("RGB "));
    EXPECT_EQ(header.pcs, signature("CMYK"));
    EXPECT_EQ(header.renderingIntent, 3u);
    char description[100] = {};
    EXPECT_EQ(icGetDescription(link.get(), description, sizeof description), 0);
    EXPECT_STREQ(description, "sRGB (IEC 61966-2-1) to Artifex CMYK SWOP Profile");
    icTagValue_t sequence = {};
    ASSERT_EQ(icTagGetById(link.get(), signature("pseq"), &sequence), 0);
    // Two profiles; the first takes 20 bytes and two descriptions of 90 bytes and their text.
    const auto* const first = static_cast<const char*>(sequence.data);
    EXPECT_EQ(first[11], 2);
    EXPECT_EQ(std::string(first + 12 + 20 + 91 + 91 + std::strlen("sRGB (IEC 61966-2-1)"), 4),
              "ABCD");
    icTagFree(&sequence);
    EXPECT_NE(run("info link.icc").out.find("violations of ICC.1: none found"), std::string::npos);
}

// Corners of the cube are grid points everywhere, so that only rounding is between the ways.
TEST_F(LinkTool, ProofsAndLinksOfLinksGiveWhatTheirPartsGive) {
    const std::string corners = "255,0,0\n0,255,0\n0,0,255\n255,255,255\n0,0,0\n";
    const Samples ink = values("--from sRGB --to cmyk.icc", corners);
    const Samples expected = values("--from cmyk.icc --to sRGB", lines(ink, 4));
    EXPECT_GT(expected[1], 5) << "a press has no such red";
    done("link sRGB cmyk.icc sRGB -o proof.icc");
    done("link sRGB cmyk.icc -o there.icc");
    done("link cmyk.icc sRGB -o back.icc");
    done("link there.icc back.icc -o both.icc");
    done("link sRGB sRGB there.icc cmyk.icc sRGB -o mix.icc");
    for (const char* name : {"proof.icc", "both.icc", "mix.icc"})
        EXPECT_LE(largestDifference(linked(name, corners), expected), 2) << name;
}

TEST_F(LinkTool, AbstractProfileChangesColoursOnTheWay) {
    LutContent gray;  // keeps L*, makes a* and b* neutral
    for (const uint16_t lightness : {0, 65535}) {
        for (int ab = 0; ab < 4; ++ab)
            gray.clut.insert(gray.clut.end(), {lightness, 32768, 32768});
    }
    save("look.icc", ProfileBytes("abst", "Lab ", "Lab ").addTag("A2B0", lut16Tag(gray)).image());
    done("link sRGB look.icc sRGB -o link.icc");
    const Samples expected = {130, 130, 130, 60, 60, 60};
    EXPECT_LE(largestDifference(linked("link.icc", "255,0,0\n60,60,60"), expected), 1);
}

TEST_F(LinkTool, EightBitTableStaysWithinOneStep) {
    done("link sRGB gray.icc -o 16.icc");
    done("link sRGB gray.icc -o 8.icc --lut8");
    EXPECT_LT(std::filesystem::file_size(path("8.icc")), 40000u);
    const std::string colours = randomLines(3, 255);
    EXPECT_LE(largestDifference(linked("8.icc", colours), linked("16.icc", colours)), 1);
}

TEST_F(LinkTool, RefusesWithReasonAndExitCode) {
    done("link sRGB cmyk.icc -o link.icc");
    save("names.icc", realProfile("colord/x11-colors.icc"));
    save("look.icc", ProfileBytes("abst", "Lab ", "Lab ").addTag("A2B0", lut16Tag({})).image());
    Bytes liar = bytes("link.icc");
    put32(liar, 16, signature("CMYK"));
    save("liar.icc", liar);
    expectComplaints({{"link sRGB -o out.icc", 2, "two profiles"},
                      {"link sRGB sRGB", 2, "--output"},
                      {"link sRGB sRGB -o out.icc --lut8 --lut16", 2, "--lut"},
                      {"link sRGB names.icc -o out.icc", 1, "named-colour"},
                      {"link look.icc sRGB -o out.icc", 1, "begins or ends in Lab"},
                      {"link sRGB look.icc -o out.icc", 1, "begins or ends in Lab"},
                      {"link cmyk.icc link.icc -o out.icc", 1, "gives CMYK"},
                      {"link link.icc link.icc -o out.icc", 1, "gives CMYK"},
                      {"values --from link.icc --to sRGB 1,2,3", 1, "--link"},
                      {"values --link sRGB 1,2,3", 1, "no device link"},
                      {"values --link liar.icc 1,2,3,4", 1, "has 3 input channels"},
                      {"values --link link.icc --from sRGB 1,2,3", 2, "--from"}});
    EXPECT_FALSE(exists("out.icc"));
}

}  // namespace
