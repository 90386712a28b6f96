// SPDX-License-Identifier: Apache-2.0
#include "xform/inverse_curve.h"

#include <vector>

#include <gtest/gtest.h>

namespace lumoxa_test {
namespace {

std::vector<float> inverseOf(float first, float last) {
    constexpr int kEntries = 256;
    std::vector<float> table(kEntries), inverse(kEntries);
    for (size_t i = 0; i < table.size(); ++i) {
        table[i] = first + (last - first) * static_cast<float>(i) / (kEntries - 1);
    }
    lumoxa::invertCurve(table.data(), kEntries, inverse.data());
    return inverse;
}

TEST(InverseCurve, LosesTheEndsOfCurvesThatStopShort) {
    const struct {
        float first, last, atBlack, atMiddle, atWhite;
    } cases[] = {{0, 65535, 0, 32768, 65535},
                 {0, 60000, 0, 35791, 65535},
                 {3000, 65535, 0, 31196, 65535},
                 {65535, 0, 65535, 32767, 0},
                 {65000, 5000, 65535, 35207, 0}};
    for (const auto& c : cases) {
        const std::vector<float> inverse = inverseOf(c.first, c.last);
        constexpr float kSearchTolerance = 257 * 0.001f * 2;  // of positions, on the output scale
        EXPECT_NEAR(inverse.front(), c.atBlack, kSearchTolerance) << c.first;
        EXPECT_NEAR((inverse[127] + inverse[128]) / 2, c.atMiddle, 1 + kSearchTolerance) << c.first;
        EXPECT_NEAR(inverse.back(), c.atWhite, kSearchTolerance) << c.first;
    }
}

}  // namespace
}  // namespace lumoxa_test
