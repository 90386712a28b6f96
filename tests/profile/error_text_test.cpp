// SPDX-License-Identifier: Apache-2.0
#include "profile/error_text.h"

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/frame.h"

namespace {

using namespace std::string_literals;

int describe(int code, char* text, int) {
    std::strcpy(text, code == 512 ? "cannot read" : "");
    return code == 512 ? 11 : 0;
}

TEST(ErrorText, WritesBeyondTheBuffer) {
    const struct {
        lumoxa::ErrorTextLookUp lookUp;
        int code, size, result;
        std::string text;  // with its NUL
    } cases[] = {{describe, 512, 37, 0, "Profile Processor Error: cannot read\0"s},
                 {describe, 512, 36, 509, "Profile Processor Error: cannot rea\0"s},
                 {describe, 512, 26, 509, ""},
                 {describe, INT_MIN, 37, 0, "Profile Processor Error: -2147483648\0"s},
                 {describe, 503, 4, 509, "Pro\0"s},
                 {describe, 503, INT_MIN, 509, ""},
                 {lumoxa::lookUpErrorText, 503, 64, 0, "Profile Processor Error: 503\0"s}};
    for (const auto& c : cases) {
        std::string buffer(64, '#');
        EXPECT_EQ(lumoxa::formatErrorText(c.code, c.size, buffer.data(), c.lookUp), c.result);
        EXPECT_EQ(buffer, c.text + std::string(64 - c.text.size(), '#'));
    }
}

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
