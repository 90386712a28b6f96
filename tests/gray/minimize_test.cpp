// SPDX-License-Identifier: Apache-2.0
#include "gray/minimize.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "gray/row_matrix.h"
#include "gray/spline.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;

TEST(SplineMinimum, StopsBesideTheValley) {
    constexpr int kPoints = 12;
    for (const double valley : {3.5, 4.02, 5.7, 6.98}) {
        std::array<float, kPoints> x{}, y{};
        for (size_t i = 0; i < x.size(); ++i) {
            x[i] = static_cast<float>(i);
            const double t = static_cast<double>(i) - valley;
            y[i] = static_cast<float>(t * t * (1 + 0.1 * t) + 7);
        }
        const Spline spline(x.data(), y.data(), kPoints);
        const float middle = std::round(static_cast<float>(valley));
        for (const float side : {-1.0f, 1.0f}) {
            float where = NAN;
            const float value =
                icSplineMinimize(middle - side, middle, middle + side, x.data(), y.data(),
                                 spline.secondDerivatives(), kPoints, 1e-4f, &where);
            EXPECT_EQ(value, spline(where));
            EXPECT_NEAR(value, 7, 1e-3);
            EXPECT_NEAR(where, valley, 0.01);
        }
    }
}

struct Descent {
    double (*height)(const double* p, int calls);
    RowMatrix<double> vertices = icAllocMatrixF64(3, 2);
    std::array<double, 3> values = {};
    int calls = 0, evaluations = -1;

    static double at(const double* p, void* context) {
        auto& self = *static_cast<Descent*>(context);
        return self.height(p, self.calls++);
    }
    /// The vertex that is lowest, or -1.
    int run() {
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 2; ++j)
                vertices[i][j] = i == j + 1 ? 1.5 : -0.5;
            values[static_cast<size_t>(i)] = at(vertices[i], this);
        }
        calls = 0;
        const int best =
            icSimplexMinimize(vertices.rows(), values.data(), 2, 1e-9, at, &evaluations, this);
        EXPECT_EQ(evaluations, calls);
        return best;
    }
};

TEST(Simplex, StopsBesideTheMinimum) {
    Descent bowl{[](const double* p, int) {
        return (p[0] - 1) * (p[0] - 1) + 3 * (p[1] + 2) * (p[1] + 2) + 0.5;
    }};
    const int best = bowl.run();
    ASSERT_GE(best, 0);
    EXPECT_EQ(bowl.values[static_cast<size_t>(best)], bowl.height(bowl.vertices[best], 0));
    EXPECT_NEAR(bowl.values[static_cast<size_t>(best)], 0.5, 1e-6);
    EXPECT_NEAR(bowl.vertices[best][0], 1, 1e-3);
    EXPECT_NEAR(bowl.vertices[best][1], -2, 1e-3);
}

TEST(Simplex, GivesUpTooSoonOrNever) {
    Descent restless{[](const double*, int calls) { return 1 + std::fmod(0.618 * calls, 1.0); }};
    EXPECT_EQ(restless.run(), -1);
    EXPECT_GE(restless.evaluations, 500);
    EXPECT_LT(restless.evaluations, 500 + 2 + 2);  // two trials and a shrink at most after a check
}

}  // namespace
}  // namespace lumoxa_test
