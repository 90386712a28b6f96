// SPDX-License-Identifier: Apache-2.0
//
// What everyone expects of a conversion without asking for it, through the public interface: one
// test a row of the table in docs/accuracy.md.
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/profile_bytes.h"
#include "tests/support/seeded_random.h"

namespace {

using namespace lumoxa_test;
using lumoxa::Conversion;
using lumoxa::ImageView;
using lumoxa::Profile;

template <class Out, class In>
std::vector<Out> through(const Conversion& conversion, const std::vector<In>& in) {
    const int inputs = conversion.inputChannels(), outputs = conversion.outputChannels();
    const auto count = static_cast<int64_t>(in.size()) / inputs;
    std::vector<Out> out(static_cast<size_t>(count * outputs));
    conversion.run(ImageView::packed(in.data(), count, 1, inputs),
                   ImageView::packed(out.data(), count, 1, outputs));
    return out;
}

Profile loaded(const ProfileBytes& bytes) {
    const Bytes image = bytes.image();
    return Profile::fromBytes(image.data(), image.size());
}

double encodedSrgb(double linear) {  // IEC 61966-2-1
    const double x = std::min(std::max(linear, 0.0), 1.0);
    return x <= 0.0031308 ? 12.92 * x : 1.055 * std::pow(x, 1 / 2.4) - 0.055;
}
double linearSrgb(double encoded) {
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

// sRGB's green is redder than Adobe's; red and blue are the same primaries but for their size, and
// both spaces have one white. Rows of XYZ(sRGB)^-1 x XYZ(Adobe), from the chromaticities.
constexpr double kAdobeToSrgb[3][3] = {
    {1.398355, -0.398355, 0}, {0, 1, 0}, {0, -0.042929, 1.042929}};

TEST(Everyday, WideRgbBecomesSrgbToTheByte) {
    const Conversion toSrgb(Profile::named("AdobeRGB"), Profile::named("sRGB"));
    const std::vector<uint16_t> words = SeededRandom(1).samples(3 * 20000, 255);
    const std::vector<uint8_t> pixels(words.begin(), words.end());
    const std::vector<uint8_t> results = through<uint8_t>(toSrgb, pixels);
    double largest = 0;
    for (size_t i = 0; i < pixels.size(); i += 3) {
        for (size_t r = 0; r < 3; ++r) {
            double linear = 0;
            for (size_t c = 0; c < 3; ++c)
                linear += kAdobeToSrgb[r][c] * std::pow(pixels[i + c] / 255.0, 563 / 256.0);
            largest = std::max(largest, std::fabs(255 * encodedSrgb(linear) - results[i + r]));
        }
    }
    EXPECT_LT(largest, 1);
}

TEST(Everyday, ParametricShadowsKeepTheirLight) {
    const Profile parametric = loaded(rgbProfile(
        {parametricTag(3, {2.4, 1 / 1.055, 0.055 / 1.055, 1 / 12.92, 0.04045})}, "mntr"));
    lumoxa::Options plain;
    plain.blackPointCompensation = false;
    const Conversion toXyz(parametric, Profile::named("XYZ"), plain);
    for (int level = 0; level <= 10; ++level) {
        const auto code = static_cast<uint8_t>(level);
        const std::vector<float> xyz =
            through<float>(toXyz, std::vector<uint8_t>{code, code, code});
        EXPECT_NEAR(xyz[1], linearSrgb(level / 255.0), 1e-5) << level;
    }
}

TEST(Everyday, WhiteInBytesOfXyzIsWhite) {
    const Conversion toRgb(Profile::named("XYZ"), Profile::named("sRGB"));
    // 1.0 is half of the range of XYZ (ICC.1:2010, 6.3.4.2).
    for (const uint8_t sample : through<uint8_t>(toRgb, std::vector<uint8_t>{123, 128, 105}))
        EXPECT_GE(sample, 250);
}

TEST(Everyday, MidGrayHasItsLightness) {
    const Conversion toLab(Profile::named("sRGB"), Profile::named("Lab"));
    const double Y = linearSrgb(32768 / 65535.0), L = 116 * std::cbrt(Y) - 16;
    const std::vector<float> lab =
        through<float>(toLab, std::vector<uint16_t>{32768, 32768, 32768});
    EXPECT_NEAR(lab[0], L, 0.02);
    EXPECT_NEAR(lab[1], 0, 0.02);
    EXPECT_NEAR(lab[2], 0, 0.02);
    const std::vector<uint16_t> words =
        through<uint16_t>(toLab, std::vector<uint16_t>{32768, 32768, 32768});
    EXPECT_NEAR(words[0] / 655.35, L, 0.02);
}

/// A version 4 display: curves that change nothing, a grid that changes nothing, gamma 2.2, the
/// colorants of sRGB, curves that change nothing.
ProfileBytes tableDisplay() {
    LutABContent content;
    content.aCurves.assign(3, parametricTag(0, {1.0}));
    content.mCurves.assign(3, parametricTag(0, {2.2}));
    content.bCurves.assign(3, parametricTag(0, {1.0}));
    // XYZ of 1.0 is 32768 of 65535.
    constexpr double kEncoded = 32768.0 / 65535.0;
    content.matrix = {0.4361, 0.3851, 0.1431, 0.2225, 0.7169, 0.0606, 0.0139, 0.0971, 0.7141};
    for (double& factor : content.matrix)
        factor *= kEncoded;
    content.matrix.insert(content.matrix.end(), {0, 0, 0});
    content.grid = {2, 2, 2};
    return ProfileBytes("mntr", "RGB ", "XYZ ")
        .addTag("wtpt", xyzTag(0.9642, 1.0, 0.8249))
        .addTag("A2B0", lutAToBTag(content));
}

TEST(Everyday, CurvesAndMatrixBehindAGridCount) {
    const Conversion fromTable(loaded(tableDisplay()), Profile::named("sRGB"));
    EXPECT_EQ(through<uint8_t>(fromTable, std::vector<uint8_t>{255, 255, 255}),
              (std::vector<uint8_t>{255, 255, 255}));
    const Profile plain = loaded(rgbProfile({parametricTag(0, {2.2})}, "mntr"));
    const Conversion fromPlain(plain, Profile::named("sRGB"));
    const std::vector<uint16_t> words = SeededRandom(2).samples(3 * 500, 255);
    const std::vector<uint8_t> pixels(words.begin(), words.end());
    const auto mine = through<uint8_t>(fromTable, pixels),
               same = through<uint8_t>(fromPlain, pixels);
    for (size_t i = 0; i < mine.size(); ++i)
        ASSERT_NEAR(mine[i], same[i], 2) << i;
}

/// Four inks that all darken alike, to Lab: a small table.
ProfileBytes inkPrinter() {
    LutContent content;
    content.inputs = 4;
    for (int node = 0; node < 16; ++node) {
        int inks = 0;
        for (int ink = 0; ink < 4; ++ink)
            inks += node >> ink & 1;
        content.clut.insert(content.clut.end(),
                            {static_cast<uint16_t>(65280 - 16000 * inks), 32768, 32768});
    }
    return ProfileBytes("prtr", "CMYK", "Lab ")
        .addTag("wtpt", xyzTag(0.9642, 1.0, 0.8249))
        .addTag("A2B0", lut16Tag(content));
}

TEST(Everyday, ABufferOfAnotherSizeIsRefusedInASentence) {
    const Conversion fromInks(loaded(inkPrinter()), Profile::named("sRGB"));
    const std::vector<uint8_t> rgb(3 * 8, 100);
    std::vector<uint8_t> results(3 * 8, 7);
    try {
        fromInks.run(ImageView::packed(rgb.data(), 8, 1, 3),
                     ImageView::packed(results.data(), 8, 1, 3));
        FAIL() << "three channels were taken for four";
    } catch (const lumoxa::Error& error) {
        EXPECT_EQ(error.code(), LMX_ERR_INVALID);
        EXPECT_NE(std::string(error.what()).find("channels"), std::string::npos) << error.what();
    }
    EXPECT_EQ(results, std::vector<uint8_t>(3 * 8, 7));
}

TEST(Everyday, AFailureIsASentenceThatNamesProfileAndTag) {
    try {
        const Conversion toInks(Profile::named("sRGB"), loaded(inkPrinter()));
        FAIL() << "a table from Lab to inks was made up";
    } catch (const lumoxa::Error& error) {
        EXPECT_EQ(error.code(), LMX_ERR_NO_TAG);
        EXPECT_EQ(error.profileIndex(), 1);
        EXPECT_EQ(error.tag(), 0x42324130U);
        EXPECT_NE(std::string(error.what()).find("'B2A0'"), std::string::npos) << error.what();
    }
}

// --- grays --------------------------------------------------------------------------------------

// Film codes: black at 95 of 1023, white at 685, both clipped beyond.
TEST(Everyday, WhiteAndBlackOfClippedCodesAreGray) {
    std::vector<uint16_t> codes;
    for (int i = 0; i < 1024; ++i)
        codes.push_back(static_cast<uint16_t>(std::clamp((i - 95) * 65535 / 590, 0, 65535)));
    const Profile film = loaded(rgbProfile({curveTag(codes)}, "mntr"));
    const Conversion toFilm(Profile::named("sRGB"), film);
    for (const uint16_t level : {uint16_t{0}, uint16_t{65535}}) {
        const uint16_t wanted = level == 0 ? 95 * 65535 / 1023 : 685 * 65535 / 1023;
        for (const uint16_t code :
             through<uint16_t>(toFilm, std::vector<uint16_t>{level, level, level}))
            EXPECT_NEAR(code, wanted, 80) << level;
    }
}

// 2 x 2 x 2 nodes of XYZ relative to D50, gray where X, Y and Z are alike, coloured elsewhere.
TEST(Everyday, GraysStayGrayInCoarseTablesOfXyz) {
    LutContent content;
    content.matrix = {1 / 0.9642, 0, 0, 0, 1, 0, 0, 0, 1 / 0.8249};
    content.clut = {0,     0, 0, 9000,  0, 30000, 0,     30000, 9000, 0,     50000, 50000,
                    30000, 0, 0, 50000, 0, 50000, 50000, 50000, 0,    65535, 65535, 65535};
    const Profile coarse = loaded(ProfileBytes("prtr", "RGB ", "XYZ ")
                                      .addTag("wtpt", xyzTag(0.9642, 1.0, 0.8249))
                                      .addTag("B2A0", lut16Tag(content)));
    lumoxa::Options plain;
    plain.blackPointCompensation = false;
    plain.exact = true;
    const Conversion toCoarse(Profile::named("gray"), coarse, plain);
    const auto rgb = through<uint16_t>(toCoarse, std::vector<uint16_t>{20000, 40000, 60000});
    for (size_t i = 0; i < rgb.size(); i += 3) {
        EXPECT_NEAR(rgb[i], rgb[i + 1], 30);
        EXPECT_NEAR(rgb[i], rgb[i + 2], 30);
    }
}

}  // namespace
