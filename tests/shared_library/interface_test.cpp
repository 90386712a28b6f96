// SPDX-License-Identifier: Apache-2.0
//
// The shared library as a program sees it that has only the public headers.
#include <gtest/gtest.h>

#include "lumoxa/lmx.h"
#include "lumoxa/lumoxa.h"

TEST(SharedLibrary, ReportsTheVersionThatItIsPackagedAs) {
    icDBInfo_s info = {};
    ASSERT_EQ(icGetInfo(&info, sizeof info), icSuccess);
    EXPECT_STREQ(info.version, LUMOXA_VERSION);
    EXPECT_STREQ(lmx_version(), LUMOXA_VERSION);
}
