// SPDX-License-Identifier: Apache-2.0
//
// A fault names the profile and the rule in one sentence, and its place in the file as fields.
#include <algorithm>
#include <optional>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/gray_profiles.h"
#include "tests/support/profile_zoo.h"
#include "tests/support/sound_profiles.h"

namespace lumoxa_test {
namespace {

using namespace std::string_literals;

/// A profile with some bytes replaced, `at` bytes into a tag, or into the file for no tag.
Bytes patched(const std::string& name, const std::string& tag, size_t at,
              const std::string& bytes) {
    Bytes profile = profileZoo().at(name);
    if (!tag.empty()) at += dataOf(profile, tag);
    std::copy(bytes.begin(), bytes.end(), profile.begin() + static_cast<std::ptrdiff_t>(at));
    return profile;
}

/// A tag that the table says to be shorter.
Bytes shortened(const std::string& name, const std::string& tag, uint32_t size) {
    Bytes profile = profileZoo().at(name);
    put32(profile, entryOf(profile, tag) + 8, size);
    return profile;
}

Bytes cut(const std::string& name, size_t size) {
    Bytes profile = profileZoo().at(name);
    profile.resize(size);
    return profile;
}

Bytes withoutTag(const std::string& name, const std::string& tag) {
    Bytes profile = profileZoo().at(name);
    std::copy_n("none", 4, profile.begin() + static_cast<std::ptrdiff_t>(entryOf(profile, tag)));
    return profile;
}

/// A curve tag where a display's red one is.
Bytes withRedCurve(const Bytes& curve) {
    ProfileBytes profile("mntr");
    for (const char* tag : {"gTRC", "bTRC"})
        profile.addTag(tag, curveTag({461}));
    return profile.addTag("rXYZ", xyzTag(0.4361, 0.2225, 0.0139))
        .addTag("gXYZ", xyzTag(0.3851, 0.7169, 0.0971))
        .addTag("bXYZ", xyzTag(0.1431, 0.0606, 0.7141))
        .addTag("rTRC", curve)
        .image();
}

Bytes grayOnLine() {
    Bytes profile = withRedCurve(curveTag({461}));
    for (const char* tag : {"gXYZ", "bXYZ"})
        std::copy_n(profile.begin() + static_cast<std::ptrdiff_t>(dataOf(profile, "rXYZ")), 20,
                    profile.begin() + static_cast<std::ptrdiff_t>(dataOf(profile, tag)));
    return profile;
}

enum Chain { kToLab, kFromLab, kAlone, kBehindAbstract };

struct Broken {
    const char* name;
    Bytes profile;
    Chain chain;
    int code;
    std::string tag;      // empty for none
    size_t at;            // of the culprit, in the tag or the file
    std::string culprit;  // the bytes there; empty where the file as a whole is at fault
    const char* says;
};
void PrintTo(const Broken& broken, std::ostream* out) {
    *out << broken.name;
}

const size_t kEnd = 999999;  // the fault has no place in the file

const std::vector<Broken>& brokenProfiles() {
    static const std::vector<Broken> list = {
        {"Empty", Bytes(), kToLab, LMX_ERR_READ, "", 0, "", "0 bytes"},
        {"HeaderCut", cut("press", 100), kToLab, LMX_ERR_READ, "", 100, "", "132"},
        {"NoProfile", Bytes(200, 'x'), kToLab, LMX_ERR_INVALID, "", 36, "xxxx", "'acsp'"},
        {"TagTableTooLong", patched("press", "", 128, "\0\1\0\0"s), kToLab, LMX_ERR_READ, "", 128,
         "\0\1\0\0"s, "65536 entries"},
        {"FileCut", cut("gray", 144), kToLab, LMX_ERR_READ, "kTRC", 132, "kTRC",
         "after the profile's end"},
        {"NoWayToPcs", oneTagProfile("prtr", "CMYK", "Lab ", curveTag({}), "kTRC"), kToLab,
         LMX_ERR_NO_TAG, "A2B0", kEnd, "", "neither"},
        {"NoWayToDevice", oneTagProfile("prtr", "CMYK", "Lab ", curveTag({}), "kTRC"), kFromLab,
         LMX_ERR_NO_TAG, "B2A0", kEnd, "", "neither"},
        {"NoCurve", withoutTag("gamma", "rTRC"), kToLab, LMX_ERR_NO_TAG, "rTRC", kEnd, "",
         "has no tag"},
        {"LutOfWrongType", patched("press", "A2B1", 0, "text"), kToLab, LMX_ERR_TAG_TYPE, "A2B1", 0,
         "text", "'text'"},
        {"CurveOfWrongType", patched("gamma", "gTRC", 0, "XYZ "), kToLab, LMX_ERR_TAG_TYPE, "gTRC",
         0, "XYZ ", "'curv' or 'para'"},
        {"ColorantOfWrongType", patched("gamma", "bXYZ", 0, "curv"), kToLab, LMX_ERR_TAG_TYPE,
         "bXYZ", 0, "curv", "must be 'XYZ '"},
        {"LutHeaderShort", shortened("press", "A2B1", 20), kToLab, LMX_ERR_READ, "A2B1", 20, "",
         "ends after 20 bytes"},
        {"LutTablesShort", shortened("press", "A2B1", 500), kToLab, LMX_ERR_READ, "A2B1", 52,
         "\0\0"s, "declares data up to byte"},
        {"LutInputs", patched("press", "A2B1", 8, "\3"s), kToLab, LMX_ERR_TAG_TYPE, "A2B1", 8,
         "\3"s, "3 input channels, but CMYK has 4"},
        {"LutOutputs", patched("press", "B2A0", 9, "\5"s), kFromLab, LMX_ERR_TAG_TYPE, "B2A0", 9,
         "\5"s, "5 output channels, but CMYK has 4"},
        {"GridOfOnePoint", patched("press", "A2B1", 10, "\1"s), kToLab, LMX_ERR_TAG_TYPE, "A2B1",
         10, "\1"s, "a grid of 1 points"},
        {"GridOfSixInputsAt33", patched("six", "A2B1", 10, "\41"s), kToLab, LMX_ERR_TAG_TYPE,
         "A2B1", 10, "\41"s, "more than 2^26"},
        {"GridOfOnePointAlongSecond", patched("ab", "A2B0", 297, "\1"s), kToLab, LMX_ERR_TAG_TYPE,
         "A2B0", 297, "\1"s, "1 points along input 2"},
        {"GridPrecision", patched("ab", "A2B0", 312, "\3"s), kToLab, LMX_ERR_TAG_TYPE, "A2B0", 312,
         "\3"s, "3 bytes, not 1 or 2"},
        {"ElementBehindTheEnd", patched("ab", "A2B0", 20, "\0\11\0\0"s), kToLab, LMX_ERR_TAG_TYPE,
         "A2B0", 20, "\0\11\0\0"s, "behind its end"},
        {"ElementInTheHeader", patched("ab", "A2B0", 12, "\0\0\0\10"s), kToLab, LMX_ERR_TAG_TYPE,
         "A2B0", 12, "\0\0\0\10"s, "inside its header"},
        {"NoGridBetweenDifferentCounts", patched("abPress", "A2B0", 24, "\0\0\0\0"s), kToLab,
         LMX_ERR_TAG_TYPE, "A2B0", 24, "\0\0\0\0"s, "no grid, but 4 inputs"},
        {"ParametricType",
         [] {
             return withRedCurve(parametricTag(9, {1, 1}));
         }(),
         kToLab, LMX_ERR_TAG_TYPE, "rTRC", 8, "\0\11"s, "type 9"},
        {"GammaOfNothing", withRedCurve(curveTag({0})), kToLab, LMX_ERR_TAG_TYPE, "rTRC", 12,
         "\0\0"s, "gamma 0"},
        {"CurveShort", patched("table", "bTRC", 8, "\0\1\0\0"s), kToLab, LMX_ERR_READ, "bTRC", 12,
         "\0\0"s, "declares data up to byte"},
        {"CurveOfBillions", patched("table", "bTRC", 8, "\377\0\0\0"s), kToLab, LMX_ERR_TAG_TYPE,
         "bTRC", 8, "\377\0\0\0"s, "more than 2^24"},
        {"DependentColorants", grayOnLine(), kFromLab, LMX_ERR_TAG_TYPE, "rXYZ", 0, "XYZ ",
         "depend on one another"},
        {"UnknownSpace", patched("press", "", 16, "ABCD"), kFromLab, LMX_ERR_INVALID, "", 16,
         "ABCD", "'ABCD'"},
        {"UnknownSpaceOfLink", patched("link", "", 20, "ABCD"), kAlone, LMX_ERR_INVALID, "", 20,
         "ABCD", "'ABCD'"},
        {"WrongConnectionSpace", patched("press", "", 20, "Luv "), kToLab, LMX_ERR_INVALID, "", 20,
         "Luv ", "'Luv '"},
        {"WrongConnectionSpaceOfDisplay", patched("gamma", "", 20, "RGB "), kToLab, LMX_ERR_INVALID,
         "", 20, "RGB ", "'RGB '"},
        {"NamedColours", patched("press", "", 12, "nmcl"), kToLab, LMX_ERR_INVALID, "", 12, "nmcl",
         "named-colour"},
        {"AbstractAlone", profileZoo().at("abstract"), kAlone, LMX_ERR_INVALID, "", 12, "abst",
         "alone"},
        {"AbstractOfDevices", patched("link", "", 12, "abst"), kToLab, LMX_ERR_INVALID, "", 16,
         "RGB ", "'RGB '"},
        {"LinkBehindAbstract", profileZoo().at("link"), kBehindAbstract, LMX_ERR_INVALID, "", 12,
         "link", "device link"},
        {"LinkForOtherSpace", profileZoo().at("link"), kFromLab, LMX_ERR_INVALID, "", 16, "RGB ",
         "is for RGB"},
        {"GrayPatches", grayProfile(grayTag(4, 2, 0, {})).image(), kFromLab, LMX_ERR_READ, "wzgd",
         0, "wzgd", "patches"},
    };
    return list;
}

class BrokenProfile : public testing::TestWithParam<Broken> {};

TEST_P(BrokenProfile, IsToldWithItsPlace) {
    using lumoxa::Profile;
    const Broken& broken = GetParam();
    const Bytes& bytes = broken.profile;
    const auto of = [](const Bytes& content) {
        return Profile::fromBytes(content.empty() ? "" : static_cast<const void*>(content.data()),
                                  content.size());
    };
    int place = -1;  // outside of chains
    try {
        const Profile profile = of(bytes), lab = Profile::named("Lab");
        place = broken.chain == kFromLab ? 1 : broken.chain == kBehindAbstract ? 2 : 0;
        lumoxa::Options options;
        options.exact = true;
        switch (broken.chain) {
            case kToLab:
                lumoxa::Conversion(profile, lab, options);
                break;
            case kFromLab:
                lumoxa::Conversion(lab, profile, options);
                break;
            case kAlone:
                lumoxa::Conversion({profile}, options);
                break;
            case kBehindAbstract:
                lumoxa::Conversion({lab, of(profileZoo().at("abstract")), profile}, options);
        }
        FAIL() << "there is no fault";
    } catch (const lumoxa::Error& error) {
        const std::string sentence = error.what();
        SCOPED_TRACE(sentence);
        EXPECT_EQ(error.code(), broken.code);
        const bool hasTag = !broken.tag.empty();
        EXPECT_EQ(error.tag(),
                  hasTag ? numberAt(Bytes(broken.tag.begin(), broken.tag.end()), 0) : 0);
        EXPECT_NE(sentence.find(hasTag ? "'" + broken.tag + "'" : "profile"), std::string::npos);
        EXPECT_NE(sentence.find(broken.says), std::string::npos);
        EXPECT_EQ(error.profileIndex(), place);
        const std::string name = "profile " + std::to_string(place + 1);
        EXPECT_EQ(sentence.find(place < 0 ? "the profile" : name), 0U);
        const bool inTag = hasTag && sentence.find("profile's end") == std::string::npos;
        if (broken.at == kEnd) {
            EXPECT_EQ(error.offset(), -1);
            return;
        }
        const size_t at = broken.at + (inTag ? dataOf(bytes, broken.tag) : 0);
        ASSERT_EQ(error.offset(), static_cast<int64_t>(at));
        ASSERT_LE(at + broken.culprit.size(), bytes.size());
        EXPECT_EQ(std::string(bytes.begin() + static_cast<std::ptrdiff_t>(at), bytes.end())
                      .substr(0, broken.culprit.size()),
                  broken.culprit);
    }
}

struct MisusedProfile {
    const char* name;
    lumoxa::Profile first, last;
    std::optional<lumoxa::Profile> proof;
    int place;
    const char* title;
    const char* says;
};

TEST(MisusedProfile, IsNamedByItsPlaceInTheCallersList) {
    using lumoxa::Profile;
    const auto of = [](const Bytes& bytes) {
        return Profile::fromBytes(bytes.data(), bytes.size());
    };
    const Profile srgb = Profile::named("sRGB"), lab = Profile::named("Lab");
    const Profile press = of(profileZoo().at("press")), gray = of(grayProfile().image());
    const Profile noWayBack =
        of(ProfileBytes("prtr", "CMYK", "Lab ").addTag("wtpt", xyzTag(1, 1, 1)).image());
    const MisusedProfile cases[] = {
        {"link from Lab", lab, press, {}, 0, "profile 1 \"", "begins or ends in Lab"},
        {"link to Lab", srgb, lab, {}, 1, "profile 2 \"", "begins or ends in Lab"},
        {"link to a print", srgb, gray, {}, 1, "profile 2: ", "gray print device"},
        {"last of a proof", srgb, noWayBack, press, 1, "profile 2: ", "neither tag 'B2A0'"},
        {"proof", srgb, press, noWayBack, -1, "the proof profile: ", "neither tag 'B2A0'"},
        {"link with a print as proof", srgb, press, gray, -1, "the proof profile: ", "gray print"},
    };
    for (const MisusedProfile& misused : cases) {
        SCOPED_TRACE(misused.name);
        lumoxa::Options options;
        options.proof = misused.proof;
        try {
            lumoxa::makeLink({misused.first, misused.last}, options);
            ADD_FAILURE() << "there is no fault";
        } catch (const lumoxa::Error& error) {
            const std::string sentence = error.what();
            EXPECT_EQ(error.profileIndex(), misused.place);
            EXPECT_EQ(sentence.find(misused.title), 0U) << sentence;
            EXPECT_NE(sentence.find(misused.says), std::string::npos) << sentence;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Faults, BrokenProfile, testing::ValuesIn(brokenProfiles()),
                         [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace lumoxa_test
