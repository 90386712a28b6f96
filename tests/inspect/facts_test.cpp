// SPDX-License-Identifier: Apache-2.0
//
// What a report says of profiles: synthetic ones, installed ones, and bytes that are none.
#include <gtest/gtest.h>

#include "inspect/inspect.h"
#include "lumoxa/lumoxa.hpp"
#include "tests/support/gray_profiles.h"
#include "tests/support/json_check.h"
#include "tests/support/real_profiles.h"
#include "tests/support/seeded_random.h"
#include "tests/support/sound_profiles.h"

namespace lumoxa_test {
namespace {

std::string reportOf(const Bytes& image) {
    const std::string json = lumoxa::inspection::inspectProfile(image);
    EXPECT_TRUE(isJson(json)) << json;
    return onOneLine(json);
}

void put(Bytes& tag, uint32_t word) {
    tag.resize(tag.size() + 4);
    put32(tag, tag.size() - 4, word);
}

Bytes wordsTag(const std::string& type, std::initializer_list<uint32_t> words) {
    Bytes tag = joined({bytesOf(type), Bytes(4)});
    for (const uint32_t word : words)
        put(tag, word);
    return tag;
}

uint32_t fixed(double value) {
    return static_cast<uint32_t>(static_cast<int32_t>(value * 65536 + (value < 0 ? -0.5 : 0.5)));
}

// The Bradford matrix from D65 to D50, to four digits.
Bytes adaptationTag() {
    return wordsTag("sf32",
                    {fixed(1.0478), fixed(0.0229), fixed(-0.0501), fixed(0.0295), fixed(0.9905),
                     fixed(-0.0171), fixed(-0.0092), fixed(0.0151), fixed(0.7517)});
}

// One name, "a", with the value "b".
Bytes dictionaryTag() {
    Bytes tag = wordsTag("dict", {1, 16, 32, 2, 34, 2});
    return joined({tag, {0, 'a', 0, 'b'}});
}

Bytes richProfile() {
    const Bytes hostile = {0, 0x1B, 0, 'a', 0xDC, 0, 0, 0x9B, 0xD8, 0x3D, 0xDE, 0};
    ProfileBytes profile("mntr", "RGB ");
    profile.addTag("rTRC", curveTag({563})).addTag("gTRC", curveTag({0, 1, 65535}));
    profile.addTag("bTRC", parametricTag(0, {2.5})).addTag("A2B0", lutAToBTag(cube()));
    profile.addTag("B2A1", lut16Tag({})).addTag("chad", adaptationTag());
    profile.addTag("wtpt", xyzTag(0.9642, 1, 0.8249)).addTag("bkpt", xyzTag(0, 0, 0));
    profile.addTag("cicp", wordsTag("cicp", {0x090E0001})).addTag("meta", dictionaryTag());
    profile.addTag("tech", wordsTag("sig ", {0x616D6420}));  // lower case: not listed
    profile.addTag("meas", wordsTag("meas", {1, 0, 0, 0, 2, fixed(0.01), 2}));
    profile.addTag("view", wordsTag("view", {0, 0, 0, 0, 0, 0, 5}));
    profile.addTag("vcgt", wordsTag("vcgt", {0, 0x00030100, 0x00020000}));
    profile.addTag("desc", localizedTag("\xC3\x01US", hostile));
    profile.addTag("\x80\xFF\x1B ", textTag("?")).addTag("cprt", textTag("\xA9 2020\x1B"));
    profile.addTag("dmnd", localizedTag("deDE", {0, 'x'}));
    return made(profile, 4);
}

TEST(Inspect, TellsWhatTagsHoldInWords) {
    const std::string report = reportOf(richProfile());
    for (const char* fact :
         {R"("form": "gamma","gamma": 2.19922)", R"("form": "table","entries": 3)",
          R"("form": "parametric","function": 0,"parameters": {"g": 2.5})",
          R"("grid": [2,3,4],"bits": 16,"elements": ["A curves","CLUT","B curves"])",
          R"("inputEntries": 256,"outputEntries": 256,"matrix": false)",
          R"("words": "Bradford adaptation from D65 to D50")",
          R"("primaries": {"code": 9,"words": "ITU-R BT.2020"})", R"("words": "full")",
          R"("technology": {"signature": "amd ","words": null})",
          R"("observer": "CIE 1931 standard observer")", R"("geometry": "0/d or d/0")",
          R"("flare": 0.00999451,"illuminant": "D65")", R"("illuminant": "D55")",
          R"("form": "table","channels": 3,"entries": 256,"bits": 16)",
          R"("metadata": [{"name": "a","value": "b"}])",
          R"("tag": "dmnd","texts": [{"language": "de-DE","text": "x"}])",
          R"("mediaBlackPoint": [0,0,0])", R"("gamutTest": false)"})
        EXPECT_NE(report.find(fact), std::string::npos) << fact << '\n' << report;
}

TEST(Inspect, TextsHoldNoControls) {
    const std::string report = reportOf(richProfile());
    EXPECT_NE(report.find("\"description\": [{\"language\": \"?\?-US\",\"text\": "
                          "\" a\xEF\xBF\xBD  \xF0\x9F\x98\x80\"}]"),
              std::string::npos)
        << report;
    EXPECT_NE(report.find("\"text\": \"\xC2\xA9 2020\""), std::string::npos) << report;
    EXPECT_NE(report.find("\"signature\": \"??? \""), std::string::npos) << report;
}

TEST(Inspect, DecodesFlagsAndAttributesInTheHeader) {
    constexpr size_t kFlagsAt = 44, kAttributesAt = 60;
    const Bytes image = withWord(withWord(version4(), kFlagsAt, 3), kAttributesAt, 0xB);
    const std::string report = reportOf(image);
    for (const char* fact :
         {R"("flagWords": ["embedded","only with the embedded colour data"])",
          R"("attributeWords": ["transparency","matte","positive","black and white"])",
          R"("className": "display")", R"("version": "4.0.0")", R"("profileId": null)"})
        EXPECT_NE(report.find(fact), std::string::npos) << fact << '\n' << report;
    const std::string real = reportOf(realProfile("colord/sRGB.icc"));
    EXPECT_NE(real.find(R"("profileIdMatches": true)"), std::string::npos) << real;
}

TEST(Inspect, MeasuresTheInkOfPrinters) {
    LutContent content;  // repeats L*, a*, b*, L*, all 1 in its lightest corner
    content.inputs = 4;
    const std::string report = reportOf(output2({}, "CMYK"));
    EXPECT_NE(report.find(R"("totalInk": [{"intent": "perceptual","tag": "B2A0","percent": 400)"),
              std::string::npos)
        << report;
    EXPECT_NE(reportOf(version4()).find(R"("totalInk": [])"), std::string::npos);
}

TEST(Inspect, NamesTheFaultOfEachTransformThatCanNotBeMade) {
    const Bytes sound = version2();
    const Bytes broken = withText(sound, dataOf(sound, "kTRC"), "sf32");
    const std::string place = std::to_string(dataOf(sound, "kTRC"));
    const std::string report = reportOf(broken);
    const std::string fault =
        R"("offered": true,"available": false,"fault": {"sentence": "tag 'kTRC' has 'sf32')";
    EXPECT_NE(report.find(fault), std::string::npos) << report;
    EXPECT_NE(report.find(R"("tag": "kTRC","offset": )" + place), std::string::npos) << report;
    EXPECT_NE(reportOf(sound).find(R"("kind": "gray curve","from": "GRAY","to": "XYZ")"),
              std::string::npos);
}

TEST(Inspect, FindsTransformsOfGrayPrintDevices) {
    const Bytes tag = grayTag(3, 5, 1, InkPrinter().patches(3, 5));
    const std::string report = reportOf(grayProfile(tag).image());
    EXPECT_NE(report.find(R"("grayDevice": {"points": 3,"steps": 5,"layout": 1})"),
              std::string::npos);
    EXPECT_NE(report.find(R"("kind": "gray print tables")"), std::string::npos) << report;
}

TEST(Inspect, ReportsOnWhatIsNoProfile) {
    for (const Bytes& bytes : {Bytes(), Bytes(10), Bytes(500, 'x')}) {
        const std::string report = reportOf(bytes);
        EXPECT_NE(report.find(R"("header": null)"), std::string::npos);
        EXPECT_NE(report.find(R"("fault": {"sentence")"), std::string::npos);
    }
}

TEST(Inspect, IsOfferedToCAndCppAlike) {
    const Bytes image = version4();
    EXPECT_EQ(lumoxa::inspect(image.data(), image.size()),
              lumoxa::inspection::inspectProfile(image));
    EXPECT_THROW(lumoxa::inspect(nullptr, 0), lumoxa::Error);
    EXPECT_EQ(lmx_inspect(image.data(), image.size(), nullptr, nullptr), LMX_ERR_INVALID);
}

TEST(Inspect, InstalledProfilesCanBeLoaded) {
    for (const std::string& path : realProfilePaths()) {
        const std::string report = reportOf(fileBytes(path));
        EXPECT_NE(report.find(R"("fault": null)"), std::string::npos) << path << report;
        EXPECT_EQ(report.find(R"("title": null)"), std::string::npos) << path;
    }
}

TEST(Inspect, BentAndCutBytesMakeReports) {
    const Bytes lut = display4(cube()), rich = richProfile();
    for (size_t length = 0; length < lut.size(); length += length < 300 ? 11 : 61)
        reportOf({lut.begin(), lut.begin() + static_cast<long>(length)});
    SeededRandom random(1);
    for (int i = 0; i < 400; ++i) {
        Bytes bent = i % 2 == 0 ? lut : rich;
        for (int j = 0; j < 4; ++j)
            bent[128 + random.upTo(599)] = static_cast<uint8_t>(random.upTo(255));
        reportOf(bent);
    }
}

// Were each tag compared with all others, or read to its end for each, the test would run for
// hours.
TEST(Inspect, HundredThousandTagsTakeNeitherLongNorManyLines) {
    constexpr uint32_t kTags = 100000, kTableAt = 132, kRow = 12, kData = 1 << 20;
    Bytes image = version4();
    image.resize(kTableAt + kTags * kRow + kData, 'x');
    put32(image, kTableAt - 4, kTags);
    for (uint32_t i = 0; i < kTags; ++i) {
        const size_t at = kTableAt + i * kRow;
        put32(image, at, i % 7 == 0 ? 0x64657363 : i);  // 'desc'
        put32(image, at + 4, kTableAt + kTags * kRow + i % 1000);
        put32(image, at + 8, kData - 1000);
    }
    const std::string report = reportOf(image);
    const auto count = [&](const std::string& part) {
        int found = 0;
        for (size_t at = report.find(part); at != std::string::npos; at = report.find(part, at + 1))
            ++found;
        return found;
    };
    EXPECT_EQ(count("\"signature\": "), 1000);
    EXPECT_EQ(count("\"tagsNotListed\": 99000"), 1);
    EXPECT_EQ(count("\"rule\": "), 100);
    EXPECT_LT(report.size(), size_t{1} << 18);
}

}  // namespace
}  // namespace lumoxa_test
