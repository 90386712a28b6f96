// SPDX-License-Identifier: Apache-2.0
#include "convert/grid_stage.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"

namespace lumoxa::engine {

static void PrintTo(Interpolation interpolation, std::ostream* out) {
    *out << (interpolation == Interpolation::kSimplex ? "simplices" : "corners");
}

}  // namespace lumoxa::engine

namespace lumoxa_test {
namespace {

using lumoxa::kBlockPixels;
using lumoxa::Row;
using namespace lumoxa::engine;

/// A grid with another number of points along each input, of values that are linear in all of them.
Grid linearGrid(int inputs, int outputs, const std::vector<double>& slopes) {
    Grid grid;
    grid.outputs = outputs;
    for (int d = 0; d < inputs; ++d)
        grid.points.push_back(d % 2 == 0 ? 2 : 4);
    std::vector<int> node(grid.points.size());
    for (bool more = true; more;) {
        for (int o = 0; o < outputs; ++o) {
            double value = 0;
            for (size_t d = 0; d < node.size(); ++d)
                value +=
                    slopes[static_cast<size_t>(o * inputs) + d] * node[d] / (grid.points[d] - 1);
            grid.nodes.push_back(static_cast<uint16_t>(std::lround(value * 65535)));
        }
        size_t d = node.size();
        while (d > 0 && ++node[d - 1] == grid.points[d - 1])
            node[--d] = 0;
        more = d > 0;
    }
    return grid;
}

class GridOfInputs : public testing::TestWithParam<std::tuple<int, int, Interpolation>> {};

TEST_P(GridOfInputs, IsExactForWhatIsLinear) {
    const auto [inputs, outputs, interpolation] = GetParam();
    SeededRandom random(static_cast<uint32_t>(inputs));
    std::vector<double> slopes;
    for (int i = 0; i < inputs * outputs; ++i)
        slopes.push_back(random.upTo(1000) / (1000.0 * inputs));
    const GridStage stage(linearGrid(inputs, outputs, slopes), interpolation);
    Row rows[kMaxChannels], before[kMaxChannels];
    for (int c = 0; c < inputs; ++c) {
        for (int i = 0; i < kBlockPixels; ++i)  // ends and beyond among them
            before[c][i] = rows[c][i] = (random.upTo(1400) - 200.0f) / 1000.0f;
    }
    stage.run(rows, kBlockPixels);
    for (int i = 0; i < kBlockPixels; ++i) {
        for (int o = 0; o < outputs; ++o) {
            double value = 0;
            for (int c = 0; c < inputs; ++c)
                value += slopes[static_cast<size_t>(o) * static_cast<size_t>(inputs) +
                                static_cast<size_t>(c)] *
                         std::clamp(before[c][i], 0.0f, 1.0f);
            EXPECT_NEAR(rows[o][i], value, 2e-5);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Simplices, GridOfInputs,
                         testing::Combine(testing::Values(1, 2, 3, 4, 5, 6, 9),
                                          testing::Values(1, 3, 4, 7),
                                          testing::Values(Interpolation::kSimplex)));
INSTANTIATE_TEST_SUITE_P(Corners, GridOfInputs,
                         testing::Combine(testing::Values(3), testing::Values(1, 3, 4, 15),
                                          testing::Values(Interpolation::kMultilinear)));

// At nodes, along edges and on the diagonal of a cell of 0s and one 1, both ways have closed forms.
TEST(GridStage, WeighsCornersByPathsOrByVolumes) {
    Grid corner = {{2, 2, 2}, 1, {0, 0, 0, 0, 0, 0, 0, 65535}};
    const auto at = [&](Interpolation interpolation, float x, float y, float z) {
        Row rows[kMaxChannels] = {{x}, {y}, {z}};
        GridStage(corner, interpolation).run(rows, 1);
        return rows[0][0];
    };
    for (const float x : {0.0f, 0.25f, 0.5f, 1.0f}) {
        for (const float y : {0.0f, 0.75f, 1.0f}) {
            EXPECT_NEAR(at(Interpolation::kMultilinear, x, y, 0.5f), x * y * 0.5f, 1e-6);
            EXPECT_NEAR(at(Interpolation::kSimplex, x, y, 0.5f), std::min({x, y, 0.5f}), 1e-6);
        }
        EXPECT_NEAR(at(Interpolation::kSimplex, x, x, x), x, 1e-6);
    }
}

}  // namespace
}  // namespace lumoxa_test
