// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa info`: what it reads from profiles, sound and broken, and which rules it sees broken.
#include <algorithm>
#include <chrono>

#include <nlohmann/json.hpp>

#include "tests/support/run_tool.h"
#include "tests/support/seeded_random.h"

namespace {

using namespace lumoxa_test;
using Json = nlohmann::json;

constexpr size_t kCountAt = 128, kTableAt = 132, kEntryBytes = 12;

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

Bytes joined(std::initializer_list<Bytes> parts) {
    Bytes all;
    for (const Bytes& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

Bytes textTag(const std::string& text) {
    return joined({bytesOf("text"), Bytes(4), bytesOf(text), Bytes(1)});
}

Bytes descriptionTag() {
    return joined({bytesOf("desc"), {0, 0, 0, 0, 0, 0, 0, 2, 'x', 0}, Bytes(78)});
}

// In one language, "enUS".
Bytes localizedTag(const std::string& language, const Bytes& utf16) {
    Bytes head = joined({bytesOf("mluc"), Bytes(12), bytesOf(language), Bytes(8)});
    head[11] = 1, head[15] = 12, head[27] = 28;
    head[23] = static_cast<uint8_t>(utf16.size());
    return joined({head, utf16});
}

// What every profile has, in the form of its version.
ProfileBytes completed(ProfileBytes profile, int version = 2) {
    const Bytes text = localizedTag("enUS", {0, 'x'});
    return profile.addTag("desc", version == 2 ? descriptionTag() : text)
        .addTag("cprt", version == 2 ? textTag("free") : text)
        .addTag("wtpt", xyzTag(0.9642, 1, 0.8249));
}

Bytes made(const ProfileBytes& profile, uint32_t version) {
    Bytes image = profile.image();
    put32(image, 8, version << 24);
    return image;
}

// Gray, since that takes few tags.
Bytes version2() {
    return made(completed(ProfileBytes("mntr", "GRAY").addTag("kTRC", curveTag({563}))), 2);
}

Bytes version4() {
    return made(completed(ProfileBytes("mntr", "GRAY").addTag("kTRC", parametricTag(0, {2})), 4),
                4);
}

Bytes output2(const Bytes& lut) {
    ProfileBytes profile("prtr", "RGB ", "Lab ");
    for (const char* tag : {"A2B0", "A2B1", "A2B2", "B2A0", "B2A1", "B2A2", "gamt"}) {
        LutContent content;
        content.outputs = *tag == 'g' ? 1 : 3;
        profile.addTag(tag, std::string(tag) == "A2B0" ? lut : lut16Tag(content));
    }
    return made(completed(profile), 2);
}

Bytes display4(const LutABContent& content, const char* deviceClass = "mntr") {
    ProfileBytes profile(deviceClass, "RGB ", "XYZ ");
    profile.addTag("A2B0", lutAToBTag(content)).addTag("B2A0", lutBToATag(content));
    return made(completed(profile, 4), 4);
}

LutABContent cube() {
    LutABContent content;
    content.grid = {2, 3, 4};
    content.aCurves = content.bCurves = std::vector<Bytes>(3, curveTag({}));
    return content;
}

size_t entryOf(const Bytes& image, const std::string& tag) {
    const Bytes signature = bytesOf(tag);
    return static_cast<size_t>(
        std::search(image.begin() + kTableAt, image.end(), signature.begin(), signature.end()) -
        image.begin());
}

size_t dataOf(const Bytes& image, const std::string& tag) {
    return number(image, entryOf(image, tag) + 4);
}

Bytes withWord(Bytes image, size_t at, uint32_t value) {
    put32(image, at, value);
    return image;
}

Bytes withText(Bytes image, size_t at, const std::string& text) {
    std::copy(text.begin(), text.end(), image.begin() + static_cast<long>(at));
    return image;
}

class Info : public ToolRun {
  protected:
    Json infoOf(const Bytes& image) const {
        save("p.icc", image);
        const Result result = run("info --json p.icc");
        EXPECT_EQ(result.signal, 0);
        EXPECT_LT(result.exitCode, 2) << result.err;
        const Json json = Json::parse(result.out, nullptr, false);
        EXPECT_FALSE(json.is_discarded()) << result.out;
        EXPECT_EQ(json["fault"].is_null(), result.exitCode == 0) << result.out;
        return json;
    }
};

struct Breakage {
    Bytes image;
    const char* tag;  // null: header or tag table
    const char* rule;
    bool alone = true;  // the only rule that the image breaks
};

std::vector<Breakage> brokenHeadersAndTables() {
    const Bytes v2 = version2(), v4 = version4();
    const size_t offsetAt = entryOf(v2, "wtpt") + 4;
    const ProfileBytes twice = completed(completed(ProfileBytes("mntr", "GRAY")));
    return {{withWord(v2, 0, 100), nullptr, "size field is the size of the file"},
            {withText(v2, 12, "abcd"), nullptr, "the class is"},
            {withText(v2, 36, "acsq"), nullptr, "'acsp', but it is 'acsq'"},
            {withWord(v2, 68, 0xF351), nullptr, "illuminant"},
            {withWord(v4, 100, 1), nullptr, "100 to 127"},
            {Bytes(v2.begin(), v2.begin() + 100), nullptr, "128 bytes"},
            {withWord(v2, kCountAt, 5000), nullptr, "tag table lies within", false},
            {withWord(v2, offsetAt, 99996), "wtpt", "ends within the file"},
            {withWord(v2, offsetAt, number(v2, offsetAt) + 1), "wtpt", "of four", false},
            {made(twice, 2), "desc", "comes once", false}};
}

std::vector<Breakage> brokenTags() {
    const Bytes v2 = version2(), v4 = version4();
    const Bytes matrixProfile = made(completed(rgbProfile({curveTag({})}, "scnr")), 2);
    const auto without = [](const Bytes& image, const char* tag) {
        return withText(image, entryOf(image, tag), "priv");
    };
    LutContent channels, matrix;
    channels.inputs = 4;
    matrix.matrix[1] = 0.5;
    return {{without(v2, "wtpt"), "wtpt", "6.3"},
            {without(v4, "kTRC"), "kTRC", "gray display profile"},
            {without(matrixProfile, "gXYZ"), "gXYZ", "matrix input profile"},
            {without(output2(lut16Tag({})), "gamt"), "gamt", "colour output profile"},
            {display4(cube(), "link"), "pseq", "device link", false},
            {withText(v2, 12, "nmcl"), "ncl2", "named colour"},
            {withWord(v4, 8, 0x02000000), "desc", "'desc', but it is 'mluc'", false},
            {output2(lut16Tag(channels)), "A2B0", "3 to 3, but they are 4 to 3"},
            {output2(lut16Tag(matrix)), "A2B0", "identity"},
            {withWord(v2, dataOf(v2, "kTRC") + 8, 2000), "kTRC", "counts take"},
            {withWord(v4, dataOf(v4, "kTRC") + 8, 5 << 16), "kTRC", "function type"},
            {withText(v2, dataOf(v2, "cprt") + 8, "\xA9"), "cprt", "7-bit"}};
}

class InfoRules : public Info, public testing::WithParamInterface<std::vector<Breakage>> {};

TEST_P(InfoRules, BrokenAreReported) {
    for (const Breakage& broken : GetParam()) {
        const Json violations = infoOf(broken.image).at("violations");
        const Json tag = broken.tag == nullptr ? Json(nullptr) : Json(broken.tag);
        EXPECT_TRUE(std::any_of(violations.begin(), violations.end(),
                                [&](const Json& violation) {
                                    const std::string rule = violation.at("rule");
                                    return violation.at("tag") == tag &&
                                           rule.find(broken.rule) != std::string::npos;
                                }))
            << broken.rule << violations.dump(1);
        EXPECT_TRUE(violations.size() == 1 || !broken.alone) << violations.dump(1);
    }
}

INSTANTIATE_TEST_SUITE_P(Parts, InfoRules, testing::Values(brokenHeadersAndTables(), brokenTags()),
                         [](const auto& info) { return info.index == 0 ? "header" : "tags"; });

TEST_F(Info, SoundProfilesBreakNoRule) {
    for (const Bytes& image : {version2(), version4(), output2(lut8Tag({})), display4(cube())}) {
        EXPECT_EQ(infoOf(image).at("violations"), Json::array());
    }
    EXPECT_NE(run("info sRGB").out.find("violations of ICC.1: none found"), std::string::npos);
}

TEST_F(Info, TextsCanNotHarmTheTerminal) {
    const Bytes hostile = {0, 0x1B, 0, 'a', 0xDC, 0, 0, 0x9B, 0xD8, 0x3D, 0xDE, 0};
    const Json json = infoOf(made(ProfileBytes("mntr", "GRAY")
                                      .addTag("desc", localizedTag("\xC3\x01US", hostile))
                                      .addTag("\x80\xFF\x1B ", textTag("?"))
                                      .addTag("cprt", textTag("\xA9 2020\x1B")),
                                  4));
    EXPECT_EQ(json["description"],
              Json::parse(R"([{"language": "??-US", "text": " a\uFFFD  \uD83D\uDE00"}])"));
    EXPECT_EQ(json["copyright"][0]["text"], "\xC2\xA9 2020");
    EXPECT_EQ(json["tags"][1]["signature"], "??? ");
}

TEST_F(Info, CurvesAndTablesAreToldByTheirShape) {
    ProfileBytes profile("mntr", "RGB ");
    profile.addTag("rTRC", curveTag({563})).addTag("gTRC", curveTag({0, 1, 65535}));
    profile.addTag("bTRC", parametricTag(0, {2.5})).addTag("A2B0", lutAToBTag(cube()));
    save("p.icc", profile.addTag("B2A1", lut16Tag({})).image());
    const std::string out = run("info p.icc").out;
    for (const char* shape :
         {"gamma 2.20\n", "table of 3 entries\n", "g 2.5\n", "CLUT 2x3x4 of 16 bits", "grid 2x2x2"})
        EXPECT_NE(out.find(shape), std::string::npos) << shape << out;
}

TEST_F(Info, RealProfilesLoad) {
    realProfile("colord/sRGB.icc");  // throws where none is installed
    for (const std::string& path : realProfilePaths()) {
        const Json json = infoOf(fileBytes(path));
        EXPECT_TRUE(json["fault"].is_null()) << path << json["fault"];
        EXPECT_FALSE(json["description"].empty()) << path;
    }
}

TEST_F(Info, HostileBytesDoNotCrash) {
    const Bytes lut = display4(cube()), names = realProfile("colord/x11-colors.icc");
    for (size_t length = 0; length < lut.size(); length += length < 300 ? 11 : 61)
        infoOf({lut.begin(), lut.begin() + static_cast<long>(length)});
    SeededRandom random(1);
    for (int i = 0; i < 40; ++i) {
        Bytes bent = i % 2 == 0 ? lut : names;
        for (int j = 0; j < 4; ++j)
            bent[kCountAt + random.upTo(599)] = static_cast<uint8_t>(random.upTo(255));
        infoOf(bent);
    }
}

TEST_F(Info, HundredThousandTagsTakeNeitherLongNorManyLines) {
    constexpr uint32_t kTags = 100000;
    Bytes image = version4();
    image.resize(kTableAt + kTags * kEntryBytes + (1 << 20), 'x');
    put32(image, kCountAt, kTags);
    for (uint32_t i = 0; i < kTags; ++i) {
        const size_t at = kTableAt + i * kEntryBytes;
        put32(image, at, i % 7 == 0 ? 0x64657363 : i);  // 'desc'
        put32(image, at + 4, kTableAt + kTags * kEntryBytes + i % 1000);
        put32(image, at + 8, (1 << 20) - 1000);
    }
    const auto before = std::chrono::steady_clock::now();
    const Json json = infoOf(image);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(20));
    EXPECT_EQ(json["violations"].size(), 100u);
    EXPECT_GT(json["violationsNotListed"], 10000);
    EXPECT_LT(json.dump().size(), 1u << 18);
}

}  // namespace
