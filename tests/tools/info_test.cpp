// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa info`: what it reads from profiles, sound and broken, and which rules it sees broken.
#include <algorithm>
#include <chrono>

#include <nlohmann/json.hpp>

#include "tests/support/profile_bytes.h"
#include "tests/support/real_profiles.h"
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

Bytes descriptionTag(const std::string& ascii, const std::string& utf16 = "") {
    Bytes counts[2] = {Bytes(4), Bytes(8)};
    put32(counts[0], 0, static_cast<uint32_t>(ascii.size() + 1));
    put32(counts[1], 4, static_cast<uint32_t>(utf16.size() / 2));
    return joined({bytesOf("desc"), Bytes(4), counts[0], bytesOf(ascii), Bytes(1), counts[1],
                   bytesOf(utf16), Bytes(70)});
}

struct Localized {
    std::string code;  // "enUS"
    Bytes utf16;
};

Bytes localizedTag(const std::vector<Localized>& texts) {
    Bytes tag = joined({bytesOf("mluc"), Bytes(12)});
    put32(tag, 8, static_cast<uint32_t>(texts.size()));
    put32(tag, 12, 12);
    size_t at = 16 + 12 * texts.size();
    for (const Localized& text : texts) {
        Bytes place(8);
        put32(place, 0, static_cast<uint32_t>(text.utf16.size()));
        put32(place, 4, static_cast<uint32_t>(at));
        tag = joined({tag, bytesOf(text.code), place});
        at += text.utf16.size();
    }
    for (const Localized& text : texts)
        tag = joined({tag, text.utf16});
    return tag;
}

// What every profile has, in the form of its version.
ProfileBytes completed(ProfileBytes profile, int version = 2) {
    const Bytes text = localizedTag({{"enUS", {0, 'x'}}});
    return profile.addTag("desc", version == 2 ? descriptionTag("x") : text)
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

uint32_t word(const Bytes& image, size_t at) {
    return static_cast<uint32_t>(image[at] << 24 | image[at + 1] << 16 | image[at + 2] << 8 |
                                 image[at + 3]);
}

size_t dataOf(const Bytes& image, const std::string& tag) {
    return word(image, entryOf(image, tag) + 4);
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
        const Result result = run({"info", "--json", path("p.icc")});
        EXPECT_EQ(result.signal, 0);
        EXPECT_LT(result.exitCode, 2) << result.err;
        const Json json = Json::parse(result.out, nullptr, false);
        EXPECT_FALSE(json.is_discarded()) << result.out;
        EXPECT_EQ(json["fault"].is_null(), result.exitCode == 0) << result.out;
        return json;
    }
};

struct Breakage {
    const char* name;
    Bytes image;
    const char* tag;  // null: header or tag table
    const char* rule;
    bool alone = true;  // the only rule that the image breaks
};
void PrintTo(const Breakage& breakage, std::ostream* out) {
    *out << breakage.name;
}
class InfoRule : public Info, public testing::WithParamInterface<Breakage> {};

TEST_P(InfoRule, BrokenIsReported) {
    const Breakage& broken = GetParam();
    const Json violations = infoOf(broken.image).at("violations");
    const Json tag = broken.tag == nullptr ? Json(nullptr) : Json(broken.tag);
    EXPECT_TRUE(std::any_of(violations.begin(), violations.end(), [&](const Json& violation) {
        const std::string rule = violation.at("rule");
        return violation.at("tag") == tag && rule.find(broken.rule) != std::string::npos;
    })) << violations.dump(1);
    if (broken.alone) {
        EXPECT_EQ(violations.size(), 1u) << violations.dump(1);
    }
}

std::vector<Breakage> brokenHeaders() {
    const Bytes v2 = version2(), v4 = version4();
    Bytes odd = v4;
    odd.push_back(0);
    put32(odd, 0, static_cast<uint32_t>(odd.size()));
    return {
        {"size", withWord(v2, 0, 100), nullptr, "size field is the size of the file"},
        {"odd size", odd, nullptr, "multiple of four"},
        {"version", withWord(v2, 8, 0x03000000), nullptr, "version is"},
        {"version end", withWord(v2, 8, 0x02000001), nullptr, "last two bytes"},
        {"class", withText(v2, 12, "abcd"), nullptr, "the class is"},
        {"space", withText(v2, 16, "CYAN"), nullptr, "colour space is", false},
        {"pcs", withText(v2, 20, "RGB "), nullptr, "connection space is"},
        {"date", withWord(v2, 24, 2020 << 16 | 13), nullptr, "creation date"},
        {"magic", withText(v2, 36, "acsq"), nullptr, "'acsp', but it is 'acsq'"},
        {"intent", withWord(v2, 64, 4), nullptr, "rendering intent"},
        {"D65", withWord(v2, 68, 0xF351), nullptr, "illuminant"},
        {"v2 reserved", withWord(v2, 84, 1), nullptr, "84 to 127"},
        {"v4 reserved", withWord(v4, 100, 1), nullptr, "100 to 127"},
        {"short file", Bytes(v2.begin(), v2.begin() + 100), nullptr, "128 bytes"},
    };
}

std::vector<Breakage> brokenTables() {
    const Bytes v2 = version2();
    const size_t offsetAt = entryOf(v2, "wtpt") + 4;
    const ProfileBytes twice = completed(completed(ProfileBytes("mntr", "GRAY")));
    return {
        {"count", withWord(v2, kCountAt, 5000), nullptr, "tag table lies within", false},
        {"beyond", withWord(v2, offsetAt, 99996), "wtpt", "ends within the file"},
        {"unaligned", withWord(v2, offsetAt, word(v2, offsetAt) + 1), "wtpt", "of four", false},
        {"in the table", withWord(v2, offsetAt, 128), "wtpt", "lies after", false},
        {"overlap", withWord(v2, entryOf(v2, "kTRC") + 8, 40), "desc", "share all their bytes"},
        {"duplicate", made(twice, 2), "desc", "comes once", false},
        {"tag too short", withWord(v2, entryOf(v2, "cprt") + 8, 3), "cprt", "a type and four"},
    };
}

std::vector<Breakage> missingTags() {
    const Bytes v2 = version2(), v4 = version4();
    const Bytes matrix = made(completed(rgbProfile({curveTag({})}, "scnr")), 2);
    const auto without = [](const Bytes& image, const char* tag) {
        return withText(image, entryOf(image, tag), "priv");
    };
    return {
        {"v2 wtpt", without(v2, "wtpt"), "wtpt", "6.3"},
        {"v4 desc", without(v4, "desc"), "desc", "8.2"},
        {"gray", without(v4, "kTRC"), "kTRC", "gray display profile"},
        {"matrix", without(matrix, "gXYZ"), "gXYZ", "matrix input profile"},
        {"matrix to Lab", withText(matrix, 20, "Lab "), nullptr, "curves and matrix lead"},
        {"gamut", without(output2(lut16Tag({})), "gamt"), "gamt", "colour output profile"},
        {"way back", without(display4(cube()), "B2A0"), "B2A0", "LUT display profile"},
        {"sequence", display4(cube(), "link"), "pseq", "device link", false},
        {"abstract", withText(v2, 12, "abst"), "A2B0", "abstract"},
        {"names", withText(v2, 12, "nmcl"), "ncl2", "named colour"},
    };
}

std::vector<Breakage> brokenTags() {
    const Bytes v2 = version2(), v4 = version4(), ab = display4(cube());
    const size_t clut = dataOf(ab, "A2B0") + word(ab, dataOf(ab, "A2B0") + 24);
    const auto typed = [](const Bytes& image, const char* tag, const char* type) {
        return withText(image, dataOf(image, tag), type);
    };
    const auto padded = [](Bytes image) {
        image[dataOf(image, "A2B0") + 11] = 9;
        return image;
    };
    LutContent channels, matrix;
    channels.inputs = 4;
    matrix.matrix[1] = 0.5;
    return {
        {"v4 desc in v2", withWord(v4, 8, 0x02000000), "desc", "'desc', but it is 'mluc'", false},
        {"v2 cprt in v4", withWord(v2, 8, 0x04000000), "cprt", "'mluc', but it is 'text'", false},
        {"white type", typed(v2, "wtpt", "sf32"), "wtpt", "type is 'XYZ '"},
        {"curve type", typed(v2, "kTRC", "text"), "kTRC", "type is 'curv'"},
        {"LUT type", typed(ab, "A2B0", "mBA "), "A2B0", "'mft1', 'mft2' or 'mAB '"},
        {"reserved", withWord(v2, dataOf(v2, "wtpt") + 4, 1), "wtpt", "bytes 4 to 7"},
        {"lut16 pad", padded(output2(lut16Tag({}))), "A2B0", "byte 11"},
        {"lut8 pad", padded(output2(lut8Tag({}))), "A2B0", "byte 11"},
        {"channels", output2(lut16Tag(channels)), "A2B0", "3 to 3, but they are 4 to 3"},
        {"matrix", output2(lut16Tag(matrix)), "A2B0", "identity"},
        {"precision", withWord(ab, clut + 16, 0), "A2B0", "1 or 2 bytes"},
        {"cut curve", withWord(v2, dataOf(v2, "kTRC") + 8, 2000), "kTRC", "counts take"},
        {"function", withWord(v4, dataOf(v4, "kTRC") + 8, 5 << 16), "kTRC", "function type"},
        {"not ASCII", withText(v2, dataOf(v2, "cprt") + 8, "\xA9"), "cprt", "7-bit"},
    };
}

INSTANTIATE_TEST_SUITE_P(Headers, InfoRule, testing::ValuesIn(brokenHeaders()));
INSTANTIATE_TEST_SUITE_P(Tables, InfoRule, testing::ValuesIn(brokenTables()));
INSTANTIATE_TEST_SUITE_P(MissingTags, InfoRule, testing::ValuesIn(missingTags()));
INSTANTIATE_TEST_SUITE_P(Tags, InfoRule, testing::ValuesIn(brokenTags()));

TEST_F(Info, SoundProfilesBreakNoRule) {
    for (const Bytes& image : {version2(), version4(), output2(lut8Tag({})), display4(cube())}) {
        EXPECT_EQ(infoOf(image).at("violations"), Json::array());
    }
    EXPECT_NE(run({"info", "sRGB"}).out.find("violations of ICC.1: none found"), std::string::npos);
}

TEST_F(Info, TextsComeInAllLanguagesAndCanNotHarm) {
    const Bytes hostile = {0, 0x1B, 0, 'a', 0xDC, 0, 0, 0x9B, 0xD8, 0x3D, 0xDE, 0};
    // The country of the second text is cleared below.
    const Bytes image = made(ProfileBytes("mntr", "GRAY")
                                 .addTag("desc", localizedTag({{"deDE", hostile},
                                                               {"enXX", {0, 0, 0, 'b'}},
                                                               {"\xC3\x01US", {0, 'c'}}}))
                                 .addTag("\x80\xFF\x1B ", textTag("?"))
                                 .addTag("cprt", textTag("\xA9 2020\x1B")),
                             4);
    const Json json = infoOf(withText(image, dataOf(image, "desc") + 30, std::string(2, '\0')));
    EXPECT_EQ(json["description"],
              Json::parse(R"([{"language": "de-DE", "text": " a\uFFFD  \uD83D\uDE00"},
                              {"language": "en", "text": ""},
                              {"language": "??-US", "text": "c"}])"));
    EXPECT_EQ(json["copyright"][0]["text"], "\xC2\xA9 2020");
    EXPECT_EQ(json["tags"][1]["signature"], "??? ");
    const Bytes unicode = made(
        ProfileBytes("mntr", "GRAY").addTag("desc", descriptionTag("", std::string("\0u", 2))), 2);
    EXPECT_EQ(infoOf(unicode)["description"][0]["text"], "u");
}

TEST_F(Info, CurvesAndTablesAreToldByTheirShape) {
    ProfileBytes profile("mntr", "RGB ");
    profile.addTag("rTRC", curveTag({563})).addTag("gTRC", curveTag({563}));
    profile.addTag("bTRC", parametricTag(3, {2.5, 1, 0, 0.5, 0.25}));
    profile.addTag("kTRC", curveTag({0, 1, 65535})).addTag("A2B0", lutAToBTag(cube()));
    LutContent lut;
    lut.inputs = 4;
    lut.inEntries = 17;
    profile.addTag("B2A1", lut16Tag(lut)).addTag("bkpt", xyzTag(0.5, 0.25, 0));
    save("p.icc", profile.image());
    const std::string out = run({"info", path("p.icc")}).out;
    for (const char* line :
         {"rTRC gTRC         gamma 2.20\n", "kTRC              table of 3 entries\n",
          "bTRC              parametric type 3: g 2.5, a 1, b 0, c 0.5, d 0.25\n",
          "A2B0  lutAtoB, 3 to 3 channels: A curves, CLUT 2x3x4 of 16 bits, B curves\n",
          "B2A1  lut16, 4 to 3 channels, grid 2x2x2x2, tables of 17 and 256 entries\n",
          "media black       0.5000 0.2500 0.0000, L* 57.1\n"}) {
        EXPECT_NE(out.find(line), std::string::npos) << line << out;
    }
}

TEST_F(Info, LinkHasOneTransformAndNoConnectionSpace) {
    LutContent toPress;
    toPress.outputs = 4;
    const Json json =
        infoOf(ProfileBytes("link", "RGB ", "CMYK").addTag("A2B0", lut16Tag(toPress)).image());
    ASSERT_EQ(json["transforms"].size(), 1u);
    EXPECT_EQ(json["transforms"][0]["direction"], "link");
    EXPECT_EQ(json["transforms"][0]["to"], "CMYK");
    EXPECT_EQ(json["header"]["outputSpace"], "CMYK");
    EXPECT_FALSE(json["header"].contains("connectionSpace"));
}

TEST_F(Info, RealProfilesLoad) {
    const std::vector<std::string> paths = realProfilePaths();
    ASSERT_FALSE(paths.empty());
    for (const std::string& path : paths) {
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
