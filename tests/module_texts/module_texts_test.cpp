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

std::string longText() {
    std::string text;
    for (int i = 0; i < 1000; ++i)
        text += static_cast<char>('0' + i % 10);
    return (text + " and thirty characters beyond").substr(0, kLongest);
}

TEST(ModuleTexts, FindTheTextOfTheCode) {
    const struct {
        int code, size, result;
        std::string text;
    } cases[] = {{503, 42, 0, "invalid argument"},
                 {503, 41, 509, "invalid argumen"},
                 {503, 26, 509, ""},
                 {504, 42, 0, "504"},  // absent, next to one that is there
                 {1, 42, 0, "1"},
                 {512, 2000, 0, longText()},
                 {512, 26 + kLongest, 0, longText()},
                 {512, 25 + kLongest, 509, longText().substr(0, kLongest - 1)},
                 {65535, 42, 0, "last"},
                 // A string table tells numbers apart by their lower 16 bits alone.
                 {65536 + 503, 42, 0, "66039"},
                 {-1, 42, 0, "-1"},
                 {INT_MIN, 42, 0, "-2147483648"}};
    for (const auto& c : cases) {
        std::string buffer(2000, '#');
        EXPECT_EQ(icGetErrorText(c.code, c.size, buffer.data()), c.result) << c.code;
        const std::string expected = c.text.empty() ? "" : kPrefix + c.text + '\0';
        EXPECT_EQ(buffer, expected + std::string(2000 - expected.size(), '#')) << c.code;
    }
}

}  // namespace
