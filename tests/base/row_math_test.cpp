// SPDX-License-Identifier: Apache-2.0
#include "base/row_math.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "base/power.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kLeast = std::numeric_limits<float>::denorm_min();

/// Positive floats with every exponent, the subnormal ones too.
std::vector<float> positiveFloats(size_t n) {
    SeededRandom random(3);
    std::vector<float> out(n);
    for (float& v : out) {
        const uint32_t high = random.upTo(0x7F7F), low = random.upTo(0xFFFF);
        v = std::bit_cast<float>(high << 16 | low);
    }
    return out;
}

std::vector<float> unitFloats(size_t n) {
    SeededRandom random(4);
    std::vector<float> out(n);
    for (float& v : out)
        v = static_cast<float>(random.upTo(65535) + 1) / 65536.0f;
    return out;
}

std::vector<uint32_t> bitsOf(const std::vector<float>& values) {
    std::vector<uint32_t> bits(values.size());
    std::transform(values.begin(), values.end(), bits.begin(), std::bit_cast<uint32_t, float>);
    return bits;
}

TEST(RowMath, CubeRootsKeepTheirErrorBound) {
    const std::vector<float> source = positiveFloats(200000);
    std::vector<float> roots = source;
    lumoxa::cubeRoots(roots.data(), static_cast<int>(roots.size()));
    double worst = 0;
    for (size_t i = 0; i < source.size(); ++i) {
        if (source[i] == 0) continue;
        const double exact = std::cbrt(static_cast<double>(source[i]));
        worst = std::max(worst, std::fabs(static_cast<double>(roots[i]) / exact - 1));
    }
    EXPECT_LE(worst, lumoxa::kCubeRootMaxError);
    EXPECT_GT(worst, 0x1p-25) << "the check sees no error at all";
}

TEST(RowMath, CubeRootsOfCubesAreExact) {
    for (int i = 0; i <= 255; ++i) {
        const auto root = static_cast<float>(i);
        EXPECT_EQ(lumoxa::cubeRoot(root * root * root), root);
    }
}

TEST(RowMath, PowersKeepTheirErrorBound) {
    double worst = 0;
    for (const float exponent : {0.01f, 1 / 2.4f, 1.0f, 1.8f, 2.2f, 2.4f, 3.0f, 7.7f, 20.0f}) {
        for (const std::vector<float>& source : {positiveFloats(30000), unitFloats(30000)}) {
            std::vector<float> row = source;
            lumoxa::powers(row.data(), static_cast<int>(row.size()), exponent);
            for (size_t i = 0; i < source.size(); ++i) {
                const double exact =
                    lumoxa::power(static_cast<double>(source[i]), static_cast<double>(exponent));
                if (exact < FLT_MIN || exact > FLT_MAX) continue;
                worst = std::max(worst, std::fabs(static_cast<double>(row[i]) / exact - 1));
            }
        }
    }
    EXPECT_LE(worst, lumoxa::kPowerMaxError);
    EXPECT_GT(worst, 0x1p-25) << "the check sees no error at all";
}

TEST(RowMath, PowerOfOneChangesNothing) {
    std::vector<float> row = positiveFloats(100000);
    const std::vector<float> source = row;
    lumoxa::powers(row.data(), static_cast<int>(row.size()), 1.0f);
    EXPECT_EQ(row, source);
}

TEST(RowMath, PowersHaveTheirLimits) {
    using Powers = std::vector<std::pair<float, float>>;
    const std::pair<float, Powers> cases[] = {
        {0.0f,
         {{0.0f, 2.4f},
          {-0.0f, 0.5f},
          {-1.0f, 2.0f},
          {-kInfinity, 2.0f},
          {kNaN, 2.4f},
          {-kNaN, 2.4f},
          {1.0f - FLT_EPSILON, kInfinity},
          {0.5f, 151.0f},
          {kLeast, 20.0f}}},
        {1.0f, {{1.0f, 0.3f}, {1.0f, FLT_MAX}, {1.0f, kInfinity}}},
        {kLeast, {{0.5f, 149.0f}, {kLeast, 1.0f}}},
        {0x1p127f, {{2.0f, 127.0f}}},
        {FLT_MAX,
         {{2.0f, 128.0f},
          {FLT_MAX, 1.0f},
          {kInfinity, 2.4f},
          {FLT_MAX, 20.0f},
          {1.0f + FLT_EPSILON, kInfinity}}}};
    for (const auto& [result, powers] : cases) {
        for (const auto& [base, exponent] : powers)
            EXPECT_EQ(lumoxa::fastPower(base, exponent), result) << base << "^" << exponent;
    }
}

TEST(RowMath, CubeRootsHaveTheirLimits) {
    for (const float v : {0.0f, -0.0f, -1.0f, -FLT_MAX, -kInfinity, kNaN, -kNaN})
        EXPECT_EQ(std::bit_cast<uint32_t>(lumoxa::cubeRoot(v)), 0u) << v;
    EXPECT_EQ(lumoxa::cubeRoot(kLeast), static_cast<float>(std::cbrt(0x1p-149)));
    EXPECT_EQ(lumoxa::cubeRoot(kInfinity), lumoxa::cubeRoot(FLT_MAX));
}

TEST(RowMath, RowsHoldTheBitsOfSingleNumbers) {
    const std::vector<float> source = positiveFloats(64);
    for (size_t length = 1; length <= 40; ++length) {
        for (size_t start = 0; start < 5; ++start) {
            std::vector<float> roots = source, powers = source;
            std::vector<float> singleRoots = source, singlePowers = source;
            lumoxa::cubeRoots(roots.data() + start, static_cast<int>(length));
            lumoxa::powers(powers.data() + start, static_cast<int>(length), 2.4f);
            for (size_t i = start; i < start + length; ++i) {
                singleRoots[i] = lumoxa::cubeRoot(source[i]);
                singlePowers[i] = lumoxa::fastPower(source[i], 2.4f);
            }
            ASSERT_EQ(bitsOf(roots), bitsOf(singleRoots)) << length << " from " << start;
            ASSERT_EQ(bitsOf(powers), bitsOf(singlePowers)) << length << " from " << start;
        }
    }
}

// FNV-1a over the results. Whoever improves the functions prints new sums; compilers, processors
// and systems have to agree on them.
TEST(RowMath, HasTheSameBitsEverywhere) {
    uint64_t sum = 0xCBF29CE484222325;
    std::vector<float> roots = positiveFloats(100000), powers = roots;
    lumoxa::cubeRoots(roots.data(), static_cast<int>(roots.size()));
    lumoxa::powers(powers.data(), static_cast<int>(powers.size()), 1 / 2.4f);
    for (const std::vector<float>& row : {roots, powers}) {
        for (const uint32_t bits : bitsOf(row))
            sum = (sum ^ bits) * 0x100000001B3;
    }
    EXPECT_EQ(sum, 475559087452367840u);
}

}  // namespace
}  // namespace lumoxa_test
