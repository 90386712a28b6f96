// SPDX-License-Identifier: Apache-2.0
//
// Descriptions of result codes, found in a library that has some: the same cases whether they come
// from the string table of a DLL or are compiled in.
#include <climits>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/frame.h"

namespace {

const std::string kPrefix = "Profile Processor Error: ";
constexpr size_t kLongest = 1023;  // characters of a description that are read

std::string digits(size_t count) {
    std::string text;
    for (size_t i = 0; i < count; ++i)
        text += static_cast<char>('0' + i % 10);
    return text;
}

std::string longText() {
    return (digits(1000) + " and thirty characters beyond").substr(0, kLongest);
}

struct TextCase {
    const char* name;
    int code, size, result;
    std::string text;
};

class ModuleTexts : public testing::TestWithParam<TextCase> {};

TEST_P(ModuleTexts, FindAnotherTextThanTheCodes) {
    const TextCase& c = GetParam();
    std::string buffer(2000, '#');
    EXPECT_EQ(icGetErrorText(c.code, c.size, buffer.data()), c.result);
    const std::string expected = c.text.empty() ? "" : kPrefix + c.text + '\0';
    EXPECT_EQ(buffer, expected + std::string(2000 - expected.size(), '#'));
}

INSTANTIATE_TEST_SUITE_P(
    Codes, ModuleTexts,
    testing::Values(
        TextCase{"found", 503, 42, 0, "invalid argument"},
        TextCase{"cut", 503, 41, 509, "invalid argumen"}, TextCase{"noneLeft", 503, 26, 509, ""},
        TextCase{"absentNextToIt", 504, 42, 0, "504"}, TextCase{"absentAltogether", 1, 42, 0, "1"},
        TextCase{"readLimit", 512, 2000, 0, longText()},
        TextCase{"readLimitFits", 512, 26 + kLongest, 0, longText()},
        TextCase{"readLimitCut", 512, 25 + kLongest, 509, longText().substr(0, 1022)},
        TextCase{"last", 65535, 42, 0, "last"},
        // A string table tells numbers apart by their lower 16 bits alone.
        TextCase{"wide", 65536 + 503, 42, 0, "66039"}, TextCase{"negative", -1, 42, 0, "-1"},
        TextCase{"lowest", INT_MIN, 42, 0, "-2147483648"}),
    [](const auto& info) { return info.param.name; });

}  // namespace
