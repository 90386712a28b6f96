// SPDX-License-Identifier: Apache-2.0
#include "gray/surface_fit.h"

#include <thread>

#include <gtest/gtest.h>

#include "gray/spline.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;

TEST(RowMatrices, HaveRowsWithoutElements) {
    for (const auto& [rows, cols] :
         {std::pair{0, 5}, {5, 0}, {-1, 3}, {3, -1}, {-2, -2}, {65536, 65536}}) {
        EXPECT_TRUE(RowMatrix<float>(rows, cols).empty()) << rows << " x " << cols;
    }
    RowMatrix<double> one = icAllocMatrixF64(1, 4), three = icAllocMatrixF64(3, 2);
    EXPECT_FALSE(one.empty());
    EXPECT_EQ(one[0][3], 0.0);
    EXPECT_EQ(three.rows()[2], three[0] + 4);
}

icSurfaceFit_t randomSurfaces(int n, uint32_t seed) {
    icSurfaceFit_t fit(n, 0);
    SeededRandom random(seed);
    for (int i = 0; i < n; ++i)
        fit.abscissae[static_cast<size_t>(i)] = static_cast<float>(1000 * i);
    for (auto& surface : fit.surfaces) {
        for (int i = 0; i < n * n; ++i)
            surface.values[i / n][i % n] = random.upTo(100);
        fit.buildRows(surface);
    }
    return fit;
}

TEST(Surfaces, LeaveTheirShape) {
    constexpr int n = 5;
    icSurfaceFit_t fit = randomSurfaces(n, 1);
    const auto at = [&](int surface, float u, float v) {
        const float point[] = {u, v};
        return fit.evaluate(fit.surfaces[surface], point);
    };
    for (int s = 0; s < 3; ++s) {
        for (int i = 0; i < n * n; ++i) {
            const int row = i / n, column = i % n;
            EXPECT_EQ(
                at(s, 1000.0f * static_cast<float>(column), 1000.0f * static_cast<float>(row)),
                fit.surfaces[s].values[row][column]);
        }
        for (int i = 0; i <= 30; ++i) {
            const float u = 130.0f * static_cast<float>(i);
            const Spline below(fit.abscissae.data(), fit.surfaces[s].values[2], n);
            const Spline above(fit.abscissae.data(), fit.surfaces[s].values[3], n);
            EXPECT_FLOAT_EQ(at(s, u, 2000), below(u));
            EXPECT_NEAR(at(s, u, 2300), 0.7 * below(u) + 0.3 * above(u), 1e-4);
        }
    }
    const float point[] = {1234, 3210};
    float results[2] = {};
    icSurfaceEval(fit, point, results);
    EXPECT_EQ(results[0], at(1, 1234, 3210));
    EXPECT_EQ(results[1], at(2, 1234, 3210));
}

// Each context has its own grid size and scratch.
TEST(Surfaces, DisturbThoseOfAnotherThread) {
    const auto sweep = [](icSurfaceFit_t& fit, std::vector<float>& out) {
        for (int i = 0; i < 8000; ++i) {
            const float point[] = {0.5f * static_cast<float>(i),
                                   4000 - 0.5f * static_cast<float>(i)};
            out.resize(out.size() + 2);
            icSurfaceEval(fit, point, &out[out.size() - 2]);
        }
    };
    icSurfaceFit_t small = randomSurfaces(5, 2), large = randomSurfaces(9, 3);
    std::vector<float> alone[2], together[2];
    sweep(small, alone[0]);
    sweep(large, alone[1]);
    std::thread other([&] { sweep(large, together[1]); });
    sweep(small, together[0]);
    other.join();
    EXPECT_EQ(together[0], alone[0]);
    EXPECT_EQ(together[1], alone[1]);
}

}  // namespace
}  // namespace lumoxa_test
