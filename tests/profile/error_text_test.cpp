// SPDX-License-Identifier: Apache-2.0
#include "profile/error_text.h"

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/frame.h"

namespace {

int describe(int code, char* text, int) {
    std::strcpy(text, code == 512 ? "cannot read" : "");
    return code == 512 ? 11 : 0;
}

struct TextCase {
    const char* name;
    lumoxa::ErrorTextLookUp lookUp;
    int code, size, result;
    const char* text;  // null: nothing written
};

class ErrorText : public testing::TestWithParam<TextCase> {};

TEST_P(ErrorText, WritesNothingBeyondTheBuffer) {
    const TextCase& c = GetParam();
    std::string buffer(64, '#');
    EXPECT_EQ(lumoxa::formatErrorText(c.code, c.size, buffer.data(), c.lookUp), c.result);
    const std::string expected = c.text == nullptr ? "" : std::string(c.text) + '\0';
    EXPECT_EQ(buffer, expected + std::string(64 - expected.size(), '#'));
}

INSTANTIATE_TEST_SUITE_P(
    Sizes, ErrorText,
    testing::Values(
        TextCase{"whole", describe, 512, 37, 0, "Profile Processor Error: cannot read"},
        TextCase{"cut", describe, 512, 36, 509, "Profile Processor Error: cannot rea"},
        TextCase{"oneLeft", describe, 512, 27, 509, "Profile Processor Error: c"},
        TextCase{"noneLeft", describe, 512, 26, 509, nullptr},
        TextCase{"number", describe, INT_MIN, 37, 0, "Profile Processor Error: -2147483648"},
        TextCase{"numberCut", describe, 503, 28, 509, "Profile Processor Error: 50"},
        TextCase{"prefixCut", describe, 503, 4, 509, "Pro"},
        TextCase{"negativeSize", describe, 503, INT_MIN, 509, nullptr},
        TextCase{"noSize", describe, 503, INT_MIN, 509, nullptr},
        TextCase{"shipped", lumoxa::lookUpErrorText, 503, 64, 0, "Profile Processor Error: 503"}),
    [](const auto& info) { return info.param.name; });

TEST(Frame, InfoNeedsTheWholeRecord) {
    icDBInfo_s info;
    std::memset(&info, 0x55, sizeof info);
    EXPECT_EQ(icGetInfo(&info, 23), 509);
    EXPECT_EQ(info.version[0], 0x55);
    EXPECT_EQ(icGetInfo(&info, 24), 0);
    EXPECT_STREQ(info.version, "2.1.0");
    EXPECT_STREQ(info.dbVersion, "1.0");
    EXPECT_EQ(info.reserved, 0);
}

}  // namespace
