// SPDX-License-Identifier: Apache-2.0
#include "gray/minimize.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "gray/spline.h"
#include "gray/surface_fit.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;

TEST(SplineMinimum, IsInTheValley) {
    constexpr int kPoints = 12;
    for (const float valley : {3.5f, 4.02f, 5.7f, 6.98f}) {
        std::array<float, kPoints> x{}, y{};
        for (size_t i = 0; i < x.size(); ++i) {
            x[i] = static_cast<float>(i);
            y[i] = (x[i] - valley) * (x[i] - valley) * (1 + 0.1f * (x[i] - valley)) + 7;
        }
        const Spline spline(x.data(), y.data(), kPoints);
        const float middle = std::round(valley);
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

TEST(Simplex, GivesUpAfterFiveHundredTrials) {
    Descent restless{[](const double*, int calls) { return 1 + std::fmod(0.618 * calls, 1.0); }};
    EXPECT_EQ(restless.run(), -1);
    EXPECT_GE(restless.evaluations, 500);
    EXPECT_LT(restless.evaluations, 500 + 2 + 2);  // two trials and a shrink at most after a check
}

}  // namespace
}  // namespace lumoxa_test
