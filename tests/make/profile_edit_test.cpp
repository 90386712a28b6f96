// SPDX-License-Identifier: Apache-2.0
//
// Tags set and removed: their bytes by version, and profiles that stay whole.
#include "make/profile_edit.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/made_profile.h"

namespace lumoxa_test {
namespace {

using lumoxa::Profile;
using lumoxa::ToneCurve;

constexpr uint32_t kDescription = LMX_SIGNATURE('d', 'e', 's', 'c');
constexpr uint32_t kCopyright = LMX_SIGNATURE('c', 'p', 'r', 't');
constexpr uint32_t kGreenCurve = LMX_SIGNATURE('g', 'T', 'R', 'C');

Profile displayOf(uint32_t version) {
    lumoxa::Display display;
    display.version = version;
    Bytes bytes = makeDisplay(display).bytes();
    std::fill_n(bytes.begin() + 84, 16, uint8_t{0xAB});  // the identifier
    return Profile::fromBytes(bytes.data(), bytes.size());
}

class ProfileEdit : public testing::Test {
  protected:
    const Profile second_ = displayOf(0x02400000), fourth_ = displayOf(0x04300000);
};

TEST_F(ProfileEdit, TextsHaveTheTypeOfTheVersion) {
    const Bytes plain = second_.withText(kCopyright, "(c)").bytes();
    EXPECT_EQ(tagOf(plain, "cprt"), (Bytes{'t', 'e', 'x', 't', 0, 0, 0, 0, '(', 'c', ')', 0}));
    icTagBase* filled = nullptr;
    const int size = icFillProfileDescription("Name", &filled);
    const auto* first = reinterpret_cast<const uint8_t*>(filled);
    EXPECT_EQ(tagOf(second_.withText(kDescription, "Name").bytes(), "desc"),
              Bytes(first, first + size));
    icFree(filled);
    const std::string text = "\u00DF\u20AC\U0001D11E\n";
    const Profile named = fourth_.withText(kDescription, text);
    EXPECT_EQ(named.description(), text);
    EXPECT_EQ(tagOf(named.bytes(), "desc"),
              (Bytes{'m', 'l', 'u', 'c',  0,    0,    0,    0,    0,    0,    0,  1, 0,
                     0,   0,   12,  'e',  'n',  'U',  'S',  0,    0,    0,    10, 0, 0,
                     0,   28,  0,   0xDF, 0x20, 0xAC, 0xD8, 0x34, 0xDD, 0x1E, 0,  10}));
}

TEST_F(ProfileEdit, WhitesAndCurvesHaveTheirExactBytes) {
    EXPECT_EQ(tagOf(second_.withWhite(1, 0.5, 2).bytes(), "wtpt"),
              (Bytes{'X', 'Y', 'Z', ' ', 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0x80, 0, 0, 2, 0, 0}));
    EXPECT_EQ(tagOf(second_.withCurve(kGreenCurve, ToneCurve::gamma(2.19921875)).bytes(), "gTRC"),
              (Bytes{'c', 'u', 'r', 'v', 0, 0, 0, 0, 0, 0, 0, 1, 2, 0x33, 0, 0}));
    const Bytes table =
        tagOf(second_.withCurve(kGreenCurve, ToneCurve::gamma(2.2)).bytes(), "gTRC");
    ASSERT_EQ(table.size(), 12 + 2 * 4096U);
    EXPECT_EQ(table[12 + 2 * 2048] << 8 | table[13 + 2 * 2048], 14271);  // 65535 (2048/4095)^2.2
    EXPECT_EQ(tagOf(fourth_.withCurve(kGreenCurve, ToneCurve::gamma(2.25)).bytes(), "gTRC"),
              (Bytes{'p', 'a', 'r', 'a', 0, 0, 0, 0, 0, 0, 0, 0, 0, 2, 0x40, 0}));
    EXPECT_EQ(tagOf(fourth_.withCurve(kGreenCurve, ToneCurve::table({0, 1})).bytes(), "gTRC"),
              (Bytes{'c', 'u', 'r', 'v', 0, 0, 0, 0, 0, 0, 0, 2, 0, 0, 0xFF, 0xFF, 0, 0}));
}

TEST_F(ProfileEdit, ClearsTheIdentifierAndLeavesTheOriginalAlone) {
    const Bytes before = fourth_.bytes();
    const Bytes after = fourth_.withWhite(0.9, 1, 0.8).bytes();
    EXPECT_EQ(fourth_.bytes(), before);
    EXPECT_TRUE(std::all_of(after.begin() + 84, after.begin() + 100,
                            [](uint8_t byte) { return byte == 0; }));
    for (const char* name : {"desc", "cprt", "chad", "rXYZ", "gTRC"})
        EXPECT_EQ(tagOf(after, name), tagOf(before, name)) << name;
}

TEST_F(ProfileEdit, RemovesTagsButNotTheLast) {
    const Bytes bytes = second_.without(kDescription).bytes();
    EXPECT_TRUE(tagOf(bytes, "desc").empty());
    EXPECT_EQ(numberAt(bytes, 128) + 1, numberAt(second_.bytes(), 128));
    lmx_profile* created = nullptr;
    ASSERT_EQ(lmx_profile_create(&created), 0);
    const Profile single(created);  // with 'cprt' alone
    EXPECT_NE(faultOf([&] { single.without(kCopyright); }).find("the only one"), std::string::npos);
}

TEST_F(ProfileEdit, RefusalsSayWhatIsWrong) {
    const uint32_t grid = LMX_SIGNATURE('A', '2', 'B', '0');
    const std::pair<std::string, const char*> cases[] = {
        {faultOf([&] { second_.withText(kDescription, "Gr\u00F6\u00DFe"); }), "plain ASCII"},
        {faultOf([&] { fourth_.withText(kDescription, "a\x1b[31m"); }), "control characters"},
        {faultOf([&] { fourth_.withText(kCopyright, "\xED\xA0\x80"); }), "not valid UTF-8"},
        {faultOf([&] { fourth_.withText(grid, "a"); }), "'A2B0' is none of the texts"},
        {faultOf([&] { fourth_.withWhite(1e-9, 1, 1); }), "above 0"},
        {faultOf([&] { fourth_.withWhite(1, 32768, 1); }), "below 32768"},
        {faultOf([&] { fourth_.withCurve(grid, ToneCurve::sRGB()); }), "none of the tone curves"},
        {faultOf([&] { fourth_.without(grid); }), "no tag 'A2B0'"}};
    for (const auto& [sentence, expected] : cases)
        EXPECT_NE(sentence.find(expected), std::string::npos) << expected << ": " << sentence;
    EXPECT_EQ(lmx_profile_set_text(nullptr, kCopyright, "a", nullptr), LMX_ERR_INVALID);
    EXPECT_EQ(lmx_profile_set_text(fourth_.handle(), kCopyright, nullptr, nullptr),
              LMX_ERR_INVALID);
    EXPECT_EQ(lmx_profile_set_curve(fourth_.handle(), kGreenCurve, nullptr, nullptr),
              LMX_ERR_INVALID);
}

}  // namespace
}  // namespace lumoxa_test
