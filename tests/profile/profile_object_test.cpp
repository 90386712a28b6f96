// SPDX-License-Identifier: Apache-2.0
//
// Created profiles, headers, search and comparison.
#include "profile/profile_object.h"

#include <cstring>
#include <string>

#include <gtest/gtest.h>

#include "lumoxa/profile.h"
#include "tests/support/profile_bytes.h"
#include "tests/support/temp_file.h"

namespace {

using lumoxa::fourcc;
using namespace lumoxa_test;

TEST(ProfileObject, CreatedProfileHasItsDefaultsAndOneTag) {
    icProfile_t profile = nullptr;
    ASSERT_EQ(icProfileCreate(nullptr, &profile), 0);
    icHeader h;
    ASSERT_EQ(icProfileGetHeader(profile, &h), 0);
    EXPECT_EQ(h.size, 200U);
    EXPECT_EQ(h.version, 0x02000000U);
    EXPECT_TRUE(h.deviceClass == fourcc("mntr") && h.colorSpace == fourcc("RGB ") &&
                h.pcs == fourcc("XYZ ") && h.platform == fourcc("MSFT"));
    EXPECT_TRUE(h.illuminant.X == 63190 && h.illuminant.Y == 65536 && h.illuminant.Z == 54061);
    EXPECT_TRUE(h.date.year >= 2024 && h.date.month >= 1 && h.date.month <= 12 && h.date.day >= 1);
    EXPECT_EQ(profile->tagList->count, 1);
    lumoxa::TagCopy tag;
    ASSERT_EQ(lumoxa::readTag(*profile, fourcc("cprt"), tag), 0);
    EXPECT_EQ(tag.size, 40U);
    EXPECT_EQ(tag.type(), fourcc("text"));
    EXPECT_STREQ(reinterpret_cast<const char*>(tag.data() + 8), "Copyright Vantorell Software");

    icHeader changed = h;
    changed.magic = 0;
    changed.size = 7;
    EXPECT_EQ(icProfileSetHeader(profile, &changed), 503);
    EXPECT_EQ(profile->header.size, 200U);
    changed.magic = h.magic;
    EXPECT_EQ(icProfileSetHeader(profile, &changed), 0);
    EXPECT_EQ(profile->header.size, 7U);
    icProfileFree(profile);
}

TEST(ProfileObject, NullArgumentsGetACode) {
    icHeader h = {};
    EXPECT_EQ(icProfileCreate(nullptr, nullptr), 503);
    EXPECT_EQ(icProfileGetHeader(nullptr, &h), 503);
    EXPECT_EQ(icProfileSetHeader(nullptr, &h), 503);
    icProfileFree(nullptr);
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

struct SearchCase {
    uint32_t selector;
    uint32_t value;
};

class Search : public testing::TestWithParam<SearchCase> {};

TEST_P(Search, TestsTheFieldOfItsSelector) {
    const icHeader header = distinctHeader();
    icSearchCriterion_t criterion = {GetParam().selector, {{GetParam().value, 0, 0}}};
    if (criterion.selector == 12) criterion.value = {{0x45464748, 0x494A4B4C, 0x4D4E4F50}};
    const icSearch_t search = {1, &criterion};
    EXPECT_EQ(icProfileCheck(&search, &header), 0);
    criterion.value.u32[criterion.selector == 12 ? 2 : 0] ^= 1;
    EXPECT_EQ(icProfileCheck(&search, &header), 503);
}

INSTANTIATE_TEST_SUITE_P(Selectors, Search,
                         testing::Values(SearchCase{1, 0x0D0E0F10}, SearchCase{2, 0x11121314},
                                         SearchCase{3, 0x15161718}, SearchCase{4, 0x05060708},
                                         SearchCase{5, 0x292A2B2C}, SearchCase{6, 0x2D2E2F30},
                                         SearchCase{7, 0x31323334}, SearchCase{8, 0x35363738},
                                         SearchCase{9, 0x393A3B3C}, SearchCase{10, 0x3D3E3F40},
                                         SearchCase{11, 0x41424344}, SearchCase{12, 0},
                                         SearchCase{13, 0x090A0B0C}, SearchCase{17, 0x54535251}));

TEST(SearchDates, AreComparedPartByPart) {
    struct {
        uint32_t selector;
        uint16_t year, month, day;
        int result;
    } const cases[] = {
        {14, 2020, 6, 10, 0},  {14, 2020, 6, 9, 503}, {14, 2020, 5, 10, 503}, {15, 2019, 6, 9, 0},
        {15, 2019, 6, 8, 503}, {16, 2019, 6, 8, 0},   {16, 2018, 7, 8, 503},  {16, 2019, 6, 9, 503},
        {0, 0, 0, 0, 0},       {18, 0, 0, 0, 0},
    };
    const icHeader header = distinctHeader();
    for (const auto& c : cases) {
        icSearchCriterion_t criterion = {c.selector, {}};
        const uint16_t parts[3] = {c.year, c.month, c.day};
        std::memcpy(&criterion.value, parts, sizeof parts);
        const icSearch_t search = {1, &criterion};
        EXPECT_EQ(icProfileCheck(&search, &header), c.result) << c.selector << ' ' << c.month;
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
    Bytes other = image;
    other.back() ^= 1;
    EXPECT_EQ(compared(other), 530);
    other = image;
    put32(other, 0, 199999);
    EXPECT_EQ(compared(other), 530);
    other = image;
    other[36] = 0;
    EXPECT_EQ(compared(other), 503);
    EXPECT_EQ(compared(Bytes(image.begin(), image.begin() + 100)), 512);
    EXPECT_EQ(compared(Bytes(image.begin(), image.end() - 1)), 512);
    EXPECT_EQ(icCompareProfiles("", image.data()), 511);
    EXPECT_EQ(icCompareProfiles("", nullptr), 520);
}

}  // namespace
