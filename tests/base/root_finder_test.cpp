// SPDX-License-Identifier: Apache-2.0
#include "base/root_finder.h"

#include <string>

#include <gtest/gtest.h>

namespace lumoxa_test {
namespace {

using lumoxa::RootSample;

/// Functions that cross zero once between 0 and 10, steep, flat or bent.
struct Crossing {
    const char* name;
    float (*function)(float);
    float at;

    friend void PrintTo(const Crossing& crossing, std::ostream* out) { *out << crossing.name; }
};

constexpr float kTolerance = 1e-4f;

float tolerance(float) {
    return kTolerance;
}

class RootFinder : public testing::TestWithParam<Crossing> {};

TEST_P(RootFinder, ComesAsNearAsAsked) {
    float root = -1;
    const auto f = GetParam().function;
    EXPECT_TRUE(lumoxa::findRoot(f, RootSample{0, f(0)}, RootSample{10, f(10)}, tolerance, root));
    EXPECT_NEAR(root, GetParam().at, 2 * kTolerance);
}

INSTANTIATE_TEST_SUITE_P(
    Functions, RootFinder,
    testing::Values(Crossing{"line", [](float x) { return 3 * x - 7; }, 7 / 3.0f},
                    Crossing{"falling", [](float x) { return 1 - x * x / 25; }, 5},
                    Crossing{"flat", [](float x) { return (x - 4) * (x - 4) * (x - 4); }, 4},
                    Crossing{"step", [](float x) { return x < 6 ? -1.0f : 1e6f; }, 6},
                    Crossing{"first end", [](float x) { return x; }, 0},
                    Crossing{"last end", [](float x) { return x - 10; }, 10}),
    [](const auto& test) {
        std::string name = test.param.name;
        std::erase(name, ' ');
        return name;
    });

// A jump that no value of single precision hits can't be come as near to as that.
TEST(RootFinderAskedForExactness, LeavesTheAnswerAlone) {
    const auto jump = [](float x) { return x < 6.1f ? -1.0f : 1.0f; };
    const auto exact = [](float) { return 0.0f; };
    float root = -1;
    EXPECT_FALSE(lumoxa::findRoot(jump, RootSample{0, -1}, RootSample{10, 1}, exact, root));
    EXPECT_EQ(root, -1);
}

}  // namespace
}  // namespace lumoxa_test
