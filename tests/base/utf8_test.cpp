// SPDX-License-Identifier: Apache-2.0
#include "base/utf8.h"

#include <vector>

#include <gtest/gtest.h>

namespace {

using namespace lumoxa;

std::vector<char32_t> characters(std::string_view text) {
    std::vector<char32_t> found;
    for (size_t at = 0; at < text.size();)
        found.push_back(nextCharacter(text, at));
    return found;
}

TEST(Utf8, GivesEveryCharacterBack) {
    for (char32_t c = 0; c <= 0x10FFFF; ++c) {
        if (isSurrogate(c)) continue;
        std::string text;
        appendUtf8(text, c);
        size_t at = 0;
        ASSERT_EQ(nextCharacter(text, at), c);
        ASSERT_EQ(at, text.size()) << std::hex << static_cast<uint32_t>(c);
    }
}

TEST(Utf8, WritesTheFormsOfTheStandard) {
    std::string text;
    for (const char32_t c : {U'A', U'\u00E9', U'\u20AC', U'\U0001F3A8'})
        appendUtf8(text, c);
    EXPECT_EQ(text, "A\xC3\xA9\xE2\x82\xAC\xF0\x9F\x8E\xA8");
}

TEST(Utf8, ReplacesWhatIsNoCharacter) {
    for (const char32_t c : {char32_t{0xD800}, char32_t{0xDFFF}, char32_t{0x110000}}) {
        std::string text;
        appendUtf8(text, c);
        EXPECT_EQ(text, "\xEF\xBF\xBD");
    }
}

TEST(Utf8, ReplacesEachInvalidByte) {
    constexpr std::string_view kInvalid[] = {
        "\x80",              // a tail alone
        "\xC3",              // cut
        "\xE2\x82",          // cut
        "\xC0\xAF",          // overlong
        "\xE0\x80\xAF",      // overlong
        "\xED\xA0\x80",      // half of a pair
        "\xF4\x90\x80\x80",  // beyond U+10FFFF
        "\xFF",
    };
    for (const std::string_view text : kInvalid) {
        EXPECT_FALSE(isUtf8(text));
        EXPECT_EQ(characters(text), std::vector<char32_t>(text.size(), kReplacement));
    }
    EXPECT_TRUE(isUtf8("\xE2\x82\xAC"));
    EXPECT_EQ(characters("\xC3\x41"), (std::vector<char32_t>{kReplacement, U'A'}));
}

}  // namespace
