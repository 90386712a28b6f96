// SPDX-License-Identifier: Apache-2.0
//
// Built-in spaces against the published numbers, and as profiles that the library reads.
#include "convert/builtin_spaces.h"

#include <cmath>
#include <limits>
#include <memory>
#include <ostream>
#include <string>

#include <gtest/gtest.h>

#include "base/fault.h"
#include "convert/colorimetry.h"
#include "profile/description_text.h"
#include "tests/support/made_profile.h"

#if defined(LUMOXA_HAVE_LCMS2)
#include <lcms2.h>
#endif

namespace lumoxa_test {
namespace {

using lumoxa::engine::builtInSpace;
using lumoxa::engine::builtInSpaceNames;

constexpr size_t kTable = 132, kEntry = 12;

// Parameters rounded to s15Fixed16 move a curve by less than half a step of 16-bit samples.
constexpr double kCurveError = 0.5 / 65535;

/// A 'para' tag's curve, from its parameters alone.
double evaluated(const Bytes& para, double x) {
    const auto p = [&](size_t i) { return fixedAt(para, 12 + 4 * i); };
    if (para.at(9) == 0) return std::pow(x, p(0));
    EXPECT_EQ(para.at(9), 3);
    return x >= p(4) ? std::pow(p(1) * x + p(2), p(0)) : p(3) * x;
}

struct Published {
    std::string name;
    double colorants[3][3];  // XYZ of red, green and blue, adapted to D50
    double points[3][2];     // encoded, linear

    friend void PrintTo(const Published& space, std::ostream* out) { *out << space.name; }
};

class RgbSpace : public testing::TestWithParam<Published> {
  protected:
    const Bytes image_ = builtInSpace(GetParam().name);
    const Bytes colorants_[3] = {tagOf(image_, "rXYZ"), tagOf(image_, "gXYZ"),
                                 tagOf(image_, "bXYZ")};
};

TEST_P(RgbSpace, HasThePublishedColorants) {
    for (size_t c = 0; c < 3; ++c) {
        for (size_t i = 0; i < 3; ++i) {
            EXPECT_NEAR(fixedAt(colorants_[c], 8 + 4 * i), GetParam().colorants[c][i], 5e-5)
                << c << i;
        }
    }
}

TEST_P(RgbSpace, AddsUpToTheWhiteExactly) {
    const uint32_t white[3] = {63190, 65536, 54061};
    const Bytes mediaWhite = tagOf(image_, "wtpt");
    for (size_t i = 0; i < 3; ++i) {
        uint32_t sum = 0;
        for (const Bytes& colorant : colorants_)
            sum += numberAt(colorant, 8 + 4 * i);
        EXPECT_EQ(sum, white[i]);
        EXPECT_EQ(numberAt(mediaWhite, 8 + 4 * i), white[i]);
    }
}

TEST_P(RgbSpace, HasThePublishedCurve) {
    const Bytes curve = tagOf(image_, "gTRC");
    EXPECT_EQ(tagOf(image_, "rTRC"), curve);
    EXPECT_EQ(tagOf(image_, "bTRC"), curve);
    EXPECT_EQ(evaluated(curve, 0), 0);
    EXPECT_EQ(evaluated(curve, 1), 1);
    for (const auto& [encoded, linear] : GetParam().points)
        EXPECT_NEAR(evaluated(curve, encoded), linear, kCurveError) << encoded;
}

// Colorants as they are printed for a D50 of 0.9642, 1, 0.8249; points are those where a curve's
// parts meet, and two more.
INSTANTIATE_TEST_SUITE_P(
    BuiltIn, RgbSpace,
    testing::Values(
        Published{
            "sRGB",
            {{0.43607, 0.22249, 0.01392}, {0.38515, 0.71687, 0.09708}, {0.14307, 0.06061, 0.71391}},
            {{0.04045, 0.0031308}, {0.02, 0.02 / 12.92}, {0.5, 0.2140411}}},
        Published{
            "AdobeRGB",
            {{0.60974, 0.31111, 0.01947}, {0.20528, 0.62567, 0.06087}, {0.14919, 0.06322, 0.74457}},
            {{0.5, 0.2177552}, {0.1, 0.0063210}, {0.9, 0.7931755}}},
        Published{"DisplayP3",
                  {{0.51512, 0.24120, -0.00105},
                   {0.29198, 0.69225, 0.04189},
                   {0.15710, 0.06657, 0.78407}},
                  {{0.04045, 0.0031308}, {0.02, 0.02 / 12.92}, {0.5, 0.2140411}}},
        Published{"Rec2020",
                  {{0.67348, 0.27904, -0.00194},
                   {0.16565, 0.67534, 0.02998},
                   {0.12505, 0.04561, 0.79686}},
                  {{0.0812429, 0.0180540}, {0.045, 0.01}, {0.5, 0.2597194}}},
        Published{"ProPhotoRGB",
                  {{0.79767, 0.28804, 0}, {0.13519, 0.71187, 0}, {0.03134, 0.00009, 0.82491}},
                  {{0.03125, 1.0 / 512}, {0.016, 0.001}, {0.5, 0.2871746}}}),
    [](const auto& test) { return test.param.name; });

TEST(BuiltInSpace, AdaptsFromD65ByBradford) {
    constexpr double kPublished[] = {1.04788,  0.02292,  -0.05022, 0.02959, 0.99048,
                                     -0.01707, -0.00925, 0.01508,  0.75168};
    const Bytes matrix = tagOf(builtInSpace("sRGB"), "chad");
    for (size_t i = 0; i < 9; ++i)
        EXPECT_NEAR(fixedAt(matrix, 8 + 4 * i), kPublished[i], 5e-5) << i;
    const Bytes none = tagOf(builtInSpace("ProPhotoRGB"), "chad");
    for (size_t i = 0; i < 9; ++i)
        EXPECT_EQ(numberAt(none, 8 + 4 * i), i % 4 == 0 ? 65536U : 0U) << i;
}

TEST(BuiltInSpace, MakesCurvesWhosePartsMeet) {
    for (const char* const name : {"sRGB", "Rec2020", "ProPhotoRGB"}) {
        const Bytes curve = tagOf(builtInSpace(name), "rTRC");
        const double start = fixedAt(curve, 12 + 16);
        EXPECT_NEAR(evaluated(curve, start), evaluated(curve, start - 1e-12), kCurveError) << name;
    }
}

TEST(BuiltInSpace, HasGrayOfTwoCurves) {
    const Bytes gray = builtInSpace("gray");
    EXPECT_EQ(tagOf(gray, "kTRC"), tagOf(builtInSpace("sRGB"), "rTRC"));
    EXPECT_NEAR(evaluated(tagOf(builtInSpace("gray-2.2"), "kTRC"), 0.5), 0.2176376, kCurveError);
}

TEST(BuiltInSpace, IsFoundInCapitalsOrNot) {
    EXPECT_EQ(builtInSpace("SRGB"), builtInSpace("srgb"));
    EXPECT_EQ(builtInSpace("GRAY-2.2"), builtInSpace("gray-2.2"));
}

TEST(BuiltInSpace, ListsTheNamesWhereNoneIsMeant) {
    using namespace std::string_view_literals;
    for (const std::string_view name : {""sv, "sRG"sv, "sRGB "sv, "sRGB\0"sv, "gray-2,2"sv}) {
        try {
            builtInSpace(name);
            ADD_FAILURE() << name;
        } catch (const lumoxa::FaultError& error) {
            EXPECT_EQ(error.fault().code, icErrInvalid);
            for (const std::string_view known : builtInSpaceNames())
                EXPECT_NE(error.fault().sentence.find(known), std::string::npos) << known;
        }
    }
}

TEST(BuiltInSpace, IsAProfileOfVersion4) {
    for (const std::string_view name : builtInSpaceNames()) {
        const Bytes image = builtInSpace(name);
        EXPECT_EQ(numberAt(image, 0), image.size());
        EXPECT_EQ(numberAt(image, 8), 0x04300000U);
        EXPECT_EQ(image.size() % 4, 0U);
        for (size_t at = kTable; at < kTable + kEntry * numberAt(image, 128); at += kEntry) {
            EXPECT_EQ(numberAt(image, at + 4) % 4, 0U);
            EXPECT_LE(size_t{numberAt(image, at + 4)} + numberAt(image, at + 8), image.size());
        }
        EXPECT_NE(lumoxa::descriptionUtf8(tagOf(image, "desc")), "") << name;
        EXPECT_FALSE(tagOf(image, "cprt").empty());
        EXPECT_NE(loaded(image), nullptr) << name;
    }
}

TEST(BuiltInSpace, TakesWhiteToD50) {
    for (const char* const name :
         {"sRGB", "AdobeRGB", "DisplayP3", "Rec2020", "ProPhotoRGB", "gray", "gray-2.2"}) {
        OwnedXform xform;
        ASSERT_EQ(request(builtInSpace(name), icRelativeColorimetric, icDeviceToPcs, xform), 0);
        const Samples white(std::string(name).starts_with("gray") ? 1 : 3, 65535);
        const Samples xyz = converted(xform.get(), white, 16, 16);
        ASSERT_EQ(xyz.size(), 3U);
        for (size_t i = 0; i < 3; ++i)  // 16 bits hold halves of the steps of s15Fixed16
            EXPECT_NEAR(xyz[i], lumoxa::kD50Xyz[i] / 2.0, 0.5) << name;
    }
}

// Device samples are those of version 4 and connection samples those of version 2, whose L* of 100
// is 65280.
TEST(BuiltInSpace, LeavesColoursOfTheConnectionSpaceAlone) {
    const struct {
        const char* name;
        Samples device, connection;
    } cases[] = {
        {"Lab", {65535, 32896, 32896, 0, 257, 51400}, {65280, 32768, 32768, 0, 256, 51200}},
        {"XYZ", {65535, 32768, 1, 31595, 40000, 12345}, {65535, 32768, 1, 31595, 40000, 12345}},
    };
    for (const auto& [name, device, connection] : cases) {
        OwnedXform to, from;
        ASSERT_EQ(request(builtInSpace(name), icRelativeColorimetric, icDeviceToPcs, to), 0);
        ASSERT_EQ(request(builtInSpace(name), icRelativeColorimetric, icPcsToDevice, from), 0);
        EXPECT_EQ(converted(to.get(), device, 16, 16), connection) << name;
        const Samples back = converted(from.get(), connection, 16, 16);
        for (size_t i = 0; i < device.size(); ++i)
            EXPECT_NEAR(back.at(i), device[i], 1) << name;
    }
}

TEST(Colorimetry, RefusesWhatNoDisplayCanBe) {
    using lumoxa::engine::DisplayColorimetry;
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    const DisplayColorimetry cases[] = {
        {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0}}}, {0.3127, 0.3290}},     // no luminance
        {{{{0.1, 0.1}, {0.2, 0.2}, {0.3, 0.3}}}, {0.3127, 0.3290}},        // on a line
        {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, {0.7, 0.2}},        // white outside
        {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, {0.3127, 0}},       // black
        {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, {0.6, 0.5}},        // z below 0
        {{{{0.64, kNan}, {0.30, 0.60}, {0.15, 0.06}}}, {0.3127, 0.3290}},  // no number
        {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}}, {kNan, 0.3290}},
        {{{{1e300, 0.33}, {0.30, 1e300}, {0.15, 0.06}}}, {0.3127, 0.3290}},
    };
    for (const DisplayColorimetry& colorimetry : cases)
        EXPECT_THROW(lumoxa::engine::displayMatrix(colorimetry), lumoxa::FaultError);
}

#if defined(LUMOXA_HAVE_LCMS2)
// The peer's own sRGB, stage by stage in double precision. A colorant that is rounded to s15Fixed16
// is off by half of 2^-16 at most; three of them, steepened near black, stay below 5e-4.
TEST(BuiltInSpace, ConvertsAsThePeersSrgbDoes) {
    using PeerProfile = std::unique_ptr<void, Release<cmsCloseProfile>>;
    const Bytes image = builtInSpace("sRGB");
    const PeerProfile ours(
        cmsOpenProfileFromMem(image.data(), static_cast<cmsUInt32Number>(image.size())));
    const PeerProfile theirs(cmsCreate_sRGBProfile());
    const std::unique_ptr<void, Release<cmsDeleteTransform>> transform(
        cmsCreateTransform(ours.get(), TYPE_RGB_DBL, theirs.get(), TYPE_RGB_DBL,
                           INTENT_RELATIVE_COLORIMETRIC, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
    ASSERT_NE(transform, nullptr);
    constexpr int kLevels = 9;
    for (int i = 0; i < kLevels * kLevels * kLevels; ++i) {
        const int levels[3] = {i % kLevels, i / kLevels % kLevels, i / (kLevels * kLevels)};
        const double rgb[3] = {levels[0] / 8.0, levels[1] / 8.0, levels[2] / 8.0};
        double out[3];
        cmsDoTransform(transform.get(), rgb, out, 1);
        for (int c = 0; c < 3; ++c)
            EXPECT_NEAR(out[c], rgb[c], 5e-4) << i;
    }
}
#endif

}  // namespace
}  // namespace lumoxa_test
