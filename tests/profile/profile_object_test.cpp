// SPDX-License-Identifier: Apache-2.0
//
// Created profiles, headers, search and comparison.
#include "profile/profile_object.h"

#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/profile.h"
#include "lumoxa/tags.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/temp_file.h"

namespace {

using namespace lumoxa_test;

TEST(ProfileObject, CreatedProfileHasItsDefaultsAndOneTag) {
    icProfile_t profile = nullptr;
    ASSERT_EQ(icProfileCreate(nullptr, &profile), 0);
    icHeader h;
    ASSERT_EQ(icProfileGetHeader(profile, &h), 0);
    EXPECT_EQ(h.size, 200U);
    EXPECT_TRUE(h.date.year >= 2024 && h.date.month >= 1 && h.date.month <= 12 && h.date.day >= 1);
    char copyright[64];
    ASSERT_EQ(icGetCopyright(profile, copyright, sizeof copyright), 0);
    EXPECT_STREQ(copyright, "Copyright Vantorell Software");
    EXPECT_EQ(profile->tagList->count, 1);

    h.size = 7;
    EXPECT_EQ(icProfileSetHeader(profile, &h), 0);
    EXPECT_EQ(profile->header.size, 7U);
    h.magic = h.size = 0;
    EXPECT_EQ(icProfileSetHeader(profile, &h), 503);
    EXPECT_EQ(profile->header.size, 7U);
    icProfileFree(profile);
}

// Every numeric field of the header differs from the others, so a test of the wrong field fails.
icHeader distinctHeader() {
    Bytes bytes(128);
    for (size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<uint8_t>(i + 1);
    icHeader header;
    icReadHeader(bytes.data(), &header);
    header.date = {2019, 6, 9, 0, 0, 0};
    return header;
}

TEST(Search, TestsTheFieldOfEachSelector) {
    const icHeader header = distinctHeader();
    const uint32_t fields[][2] = {
        {1, 0x0D0E0F10},  {2, 0x11121314},  {3, 0x15161718},  {4, 0x05060708}, {5, 0x292A2B2C},
        {6, 0x2D2E2F30},  {7, 0x31323334},  {8, 0x35363738},  {9, 0x393A3B3C}, {10, 0x3D3E3F40},
        {11, 0x41424344}, {12, 0x45464748}, {13, 0x090A0B0C}, {17, 0x54535251}};
    for (const auto& [selector, value] : fields) {
        icSearchCriterion_t criterion = {selector, {{value, 0x494A4B4C, 0x4D4E4F50}}};
        const icSearch_t search = {1, &criterion};
        EXPECT_EQ(icProfileCheck(&search, &header), 0) << selector;
        criterion.value.u32[selector == 12 ? 2 : 0] ^= 1;
        EXPECT_EQ(icProfileCheck(&search, &header), 503) << selector;
    }
    const struct {
        uint32_t selector;
        uint16_t date[3];
        int result;
    } dates[] = {{14, {2020, 6, 10}, 0},
                 {14, {2020, 6, 9}, 503},
                 {14, {2020, 5, 10}, 503},
                 {15, {2019, 6, 9}, 0},
                 {15, {2019, 6, 8}, 503},
                 {16, {2019, 6, 8}, 0},
                 {16, {2018, 7, 8}, 503},
                 {0, {}, 0},
                 {18, {}, 0}};
    for (const auto& d : dates) {
        icSearchCriterion_t criterion = {d.selector, {}};
        std::copy_n(d.date, 3, criterion.value.u16);
        const icSearch_t search = {1, &criterion};
        EXPECT_EQ(icProfileCheck(&search, &header), d.result) << d.selector << ' ' << d.date[1];
    }
}

TEST(Compare, TellsEqualDifferentAndBroken) {
    Bytes image = smallRgbProfile();
    image.resize(200000);  // several chunks
    put32(image, 0, 200000);
    const auto compared = [&](const Bytes& file) {
        return icCompareProfiles(TempFile(file).path().c_str(), image.data());
    };
    EXPECT_EQ(compared(image), 0);
    for (const auto& [at, code] : {std::pair{199999U, 530}, {3U, 530}, {36U, 503}}) {
        Bytes other = image;
        other[at] ^= 1;
        EXPECT_EQ(compared(other), code) << at;
    }
    EXPECT_EQ(compared(Bytes(image.begin(), image.begin() + 100)), 512);
    EXPECT_EQ(compared(Bytes(image.begin(), image.end() - 1)), 512);
    EXPECT_EQ(icCompareProfiles("", image.data()), 511);
    EXPECT_EQ(icCompareProfiles("", nullptr), 520);
}

}  // namespace
