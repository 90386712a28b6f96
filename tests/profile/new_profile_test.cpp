// SPDX-License-Identifier: Apache-2.0
//
// Profiles and tags that are made here, byte by byte.
#include "profile/new_profile.h"

#include <array>
#include <cstring>
#include <limits>

#include "base/fault.h"
#include "profile/description_text.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

TEST(TagBytes, AreThoseOfTheTypes) {
    EXPECT_EQ(lumoxa::curveTag(std::array<uint16_t, 2>{1, 0xFFFE}), curveTag({1, 0xFFFE}));
    EXPECT_EQ(lumoxa::curveTag({}), curveTag({}));
    EXPECT_EQ(lumoxa::parametricTag(3, std::array{2.4, 0.5, -0.25, 1.0, 0.125}),
              parametricTag(3, {2.4, 0.5, -0.25, 1.0, 0.125}));
    EXPECT_EQ(lumoxa::xyzTag({65536, -1, 0x7FFF8000}),
              (Bytes{'X', 'Y', 'Z',  ' ',  0,    0,    0,    0,    0,    1,
                     0,   0,   0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0x80, 0}));
    EXPECT_EQ(lumoxa::matrixTag({{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}}).size(), 44U);
}

TEST(TagBytes, HoldTextOfAnyLanguage) {
    const std::string text = "Pr\xC3\xA4gung \xF0\x9F\x8E\xA8";
    EXPECT_EQ(lumoxa::descriptionUtf8(lumoxa::localizedTag(text)), text);
    EXPECT_EQ(lumoxa::descriptionUtf8(lumoxa::localizedTag("\xE4.")), "\xEF\xBF\xBD.");
    EXPECT_EQ(lumoxa::descriptionUtf8(lumoxa::localizedTag("")), "");
}

TEST(TagBytes, RoundToTheNearestFixedNumber) {
    constexpr double kUnit = 1.0 / 65536;
    EXPECT_EQ(lumoxa::toFixed16(-1), -65536);
    EXPECT_EQ(lumoxa::toFixed16(0.4 * kUnit), 0);
    EXPECT_EQ(lumoxa::toFixed16(-0.6 * kUnit), -1);
    EXPECT_EQ(lumoxa::toFixed16(32768 - kUnit), std::numeric_limits<int32_t>::max());
    EXPECT_EQ(lumoxa::toFixed16(-32768), std::numeric_limits<int32_t>::min());
    for (const double value : {32768.0, -32768.1, 1e300, std::numeric_limits<double>::infinity(),
                               std::numeric_limits<double>::quiet_NaN()})
        EXPECT_THROW(lumoxa::toFixed16(value), lumoxa::FaultError) << value;
}

TEST(NewProfile, StartsTagsOnBoundariesAndSharesWhatIsTheSame) {
    lumoxa::NewProfile profile;
    profile.deviceClass = fourcc("spac");
    profile.intent = 2;
    profile.created = {2026, 1, 2, 3, 4, 5};
    const Bytes odd = curveTag({7}), other = xyzTag(1, 0, 0);
    profile.tags = {{fourcc("one "), odd}, {fourcc("two "), other}, {fourcc("thre"), odd}};
    const Bytes image = lumoxa::profileBytes(profile);
    icHeader header;
    ASSERT_EQ(icReadHeader(image.data(), &header), 0);
    EXPECT_EQ(header.size, image.size());
    EXPECT_EQ(header.size, 128U + 4 + 3 * 12 + 16 + 20);
    EXPECT_EQ(header.version, 0x04300000U);
    EXPECT_EQ(header.deviceClass, fourcc("spac"));
    EXPECT_TRUE(header.colorSpace == fourcc("RGB ") && header.pcs == fourcc("XYZ "));
    EXPECT_TRUE(header.date.year == 2026 && header.date.seconds == 5);
    EXPECT_EQ(header.magic, fourcc("acsp"));
    EXPECT_EQ(header.renderingIntent, 2U);
    EXPECT_TRUE(header.illuminant.X == 63190 && header.illuminant.Z == 54061);
    const uint32_t expected[][3] = {
        {fourcc("one "), 168, 14}, {fourcc("two "), 184, 20}, {fourcc("thre"), 168, 14}};
    for (size_t tag = 0; tag < 3; ++tag) {
        for (size_t field = 0; field < 3; ++field) {
            EXPECT_EQ(numberAt(image, 132 + 12 * tag + 4 * field), expected[tag][field]);
        }
    }
    EXPECT_EQ(std::memcmp(&image[168], odd.data(), odd.size()), 0);
    EXPECT_EQ(std::memcmp(&image[184], other.data(), other.size()), 0);
}

}  // namespace
}  // namespace lumoxa_test
