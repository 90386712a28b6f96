// SPDX-License-Identifier: Apache-2.0
//
// The frame of the library. Texts with descriptions have tests of their own, in module_texts.
#include "lumoxa/frame.h"

#include <climits>
#include <cstring>
#include <string>

#include <gtest/gtest.h>

namespace {

using namespace std::string_literals;

TEST(ErrorText, StaysInsideTheBuffer) {
    const struct {
        int size, result;
        std::string text;  // with its NUL
    } cases[] = {{64, 0, "Profile Processor Error: 503\0"s},
                 {28, 509, "Profile Processor Error: 50\0"s},
                 {4, 509, "Pro\0"s},
                 {0, 509, ""},
                 {INT_MIN, 509, ""}};
    for (const auto& c : cases) {
        std::string buffer(64, '#');
        EXPECT_EQ(icGetErrorText(503, c.size, buffer.data()), c.result) << c.size;
        EXPECT_EQ(buffer, c.text + std::string(64 - c.text.size(), '#')) << c.size;
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
