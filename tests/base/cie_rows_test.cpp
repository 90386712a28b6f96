// SPDX-License-Identifier: Apache-2.0
#include "base/cie_rows.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using Triple = std::array<float, 3>;

Triple toLab(Triple v) {
    lumoxa::xyzToLab(&v[0], &v[1], &v[2], 1);
    return v;
}

Triple toXyz(Triple v) {
    lumoxa::labToXyz(&v[0], &v[1], &v[2], 1);
    return v;
}

double distance(const Triple& a, const Triple& b) {
    double most = 0;
    for (size_t i = 0; i < 3; ++i)
        most = std::max(most, std::fabs(static_cast<double>(a[i]) - static_cast<double>(b[i])));
    return most;
}

Triple between(SeededRandom& random, const Triple& low, const Triple& high) {
    Triple out;
    for (size_t i = 0; i < 3; ++i)
        out[i] = low[i] + (high[i] - low[i]) * static_cast<float>(random.upTo(65535)) / 65535.0f;
    return out;
}

constexpr Triple kWhite = {lumoxa::kWhiteX, lumoxa::kWhiteY, lumoxa::kWhiteZ};

TEST(CieRows, WhiteAndBlackAreExact) {
    const Triple white = {100, 0, 0}, black = {0, 0, 0};
    EXPECT_EQ(toLab(kWhite), white);
    EXPECT_EQ(toXyz(white), kWhite);
    EXPECT_EQ(toLab(black), black);
    EXPECT_EQ(toXyz(black), black);
}

// CIE 15: L* = 903.3 Y below the junction; Y = 0.18418651851244416 is L* = 50.
TEST(CieRows, LightnessFollowsItsDefinition) {
    EXPECT_EQ(toLab({0, 0.18418651851244416f, 0})[0], 50.0f);
    EXPECT_EQ(toLab({0, 0.001f, 0})[0], static_cast<float>(24389.0 / 27 * 0.001f));
    EXPECT_EQ(toLab({0, -0.001f, 0})[0], static_cast<float>(24389.0 / 27 * -0.001f));
    EXPECT_EQ(toLab({0, static_cast<float>(216.0 / 24389), 0})[0], 8.0f);
}

TEST(CieRows, SegmentsMeet) {
    const auto junction = static_cast<float>(216.0 / 24389);
    const float above = std::nextafter(junction, 1.0f), below = std::nextafter(junction, 0.0f);
    const float step = toLab({0, above, 0})[0] - toLab({0, below, 0})[0];
    EXPECT_GT(step, 0);
    EXPECT_LT(step, 5e-6f);  // 903.3 times two units of 9.3e-10, rounded to units of 9.5e-7
}

TEST(CieRows, ColoursComeBack) {
    SeededRandom random(11);
    for (int i = 0; i < 100000; ++i) {
        const Triple lab = between(random, {0, -128, -128}, {100, 128, 128});
        const Triple xyz = between(random, {0, 0, 0}, {1, 1, 1});
        ASSERT_LE(distance(toLab(toXyz(lab)), lab), lumoxa::kLabRoundTripMaxError);
        ASSERT_LE(distance(toXyz(toLab(xyz)), xyz), lumoxa::kXyzRoundTripMaxError);
    }
}

TEST(CieRows, NoNumberStaysNone) {
    const float none = std::numeric_limits<float>::quiet_NaN();
    for (const float y : {none, -none}) {
        EXPECT_TRUE(std::isnan(toLab({0, y, 0})[0]));
        EXPECT_TRUE(std::isnan(toXyz({y, 0, 0})[1]));
    }
}

TEST(CieRows, RowsHoldTheBitsOfSinglePixels) {
    SeededRandom random(13);
    for (const auto& [convert, top] :
         {std::pair{&lumoxa::xyzToLab, 1.0f}, {&lumoxa::labToXyz, 100.0f}}) {
        for (size_t length = 1; length <= 40; ++length) {
            for (size_t start = 0; start < 4; ++start) {
                std::array<std::array<float, 45>, 3> rows;
                for (size_t i = 0; i < 45; ++i) {
                    const Triple pixel = between(random, {-0.1f, -0.1f, -0.1f}, {top, top, top});
                    for (size_t c = 0; c < 3; ++c)
                        rows[c][i] = pixel[c];
                }
                auto single = rows;
                for (size_t i = start; i < start + length; ++i)
                    convert(&single[0][i], &single[1][i], &single[2][i], 1);
                convert(&rows[0][start], &rows[1][start], &rows[2][start], int(length));
                ASSERT_EQ(rows, single) << length << " from " << start;
            }
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
