// SPDX-License-Identifier: Apache-2.0
#include "gray/minimize.h"

#include <algorithm>
#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "gray/row_matrix.h"
#include "gray/spline.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa;

class SplineMinimum : public testing::TestWithParam<double> {};

TEST_P(SplineMinimum, StopsBesideTheValley) {
    constexpr int kPoints = 12;
    std::array<float, kPoints> x{}, y{};
    for (size_t i = 0; i < x.size(); ++i) {
        x[i] = static_cast<float>(i);
        const double t = static_cast<double>(i) - GetParam();
        y[i] = static_cast<float>(t * t * (1 + 0.1 * t) + 7);
    }
    const Spline spline(x.data(), y.data(), kPoints);
    const auto lowest = static_cast<size_t>(std::min_element(y.begin(), y.end()) - y.begin());
    float lowestValue = y[lowest];
    for (int i = 0; i <= 20000; ++i)
        lowestValue = std::min(lowestValue, spline(x[lowest - 1] + static_cast<float>(i) * 1e-4f));
    for (const bool turned : {false, true}) {
        const float left = x[lowest - 1], right = x[lowest + 1];
        float where = NAN;
        const float value =
            icSplineMinimize(turned ? right : left, x[lowest], turned ? left : right, x.data(),
                             y.data(), spline.secondDerivatives(), kPoints, 1e-4f, &where);
        EXPECT_EQ(value, spline(where));
        EXPECT_NEAR(value, lowestValue, 1e-5);
        EXPECT_NEAR(where, GetParam(), 0.01);
    }
}

INSTANTIATE_TEST_SUITE_P(Places, SplineMinimum, testing::Values(3.5, 4.02, 5.7, 6.98));

/// An objective that counts its calls.
struct Landscape {
    double (*height)(const double* p, int calls);
    int calls = 0;
    static double at(const double* p, void* context) {
        auto& self = *static_cast<Landscape*>(context);
        return self.height(p, self.calls++);
    }
};

struct Descent {
    RowMatrix<double> vertices;
    std::vector<double> values;
    int best = 0, evaluations = -1;

    Descent(int ndim, double ftol, Landscape& landscape, const std::vector<double>& given = {})
        : vertices(icAllocMatrixF64(ndim + 1, ndim)), values(given) {
        for (int i = 0; i <= ndim; ++i) {
            for (int j = 0; j < ndim; ++j)
                vertices[i][j] = i == j + 1 ? 1.5 : -0.5;
            if (given.empty()) values.push_back(Landscape::at(vertices[i], &landscape));
        }
        landscape.calls = 0;
        best = icSimplexMinimize(vertices.rows(), values.data(), ndim, ftol, Landscape::at,
                                 &evaluations, &landscape);
        EXPECT_EQ(evaluations, landscape.calls);
    }
};

double sq(double v) {
    return v * v;
}

TEST(Simplex, StopsBesideTheMinimum) {
    const struct {
        int ndim;
        double (*height)(const double*, int);
        double minimum[3];
    } cases[] = {
        {2, [](const double* p, int) { return sq(p[0] - 1) + 3 * sq(p[1] + 2) + 0.5; }, {1, -2}},
        {3,
         [](const double* p, int) { return sq(p[0] - 1) + sq(p[1] + 2) + 2 * sq(p[2] - 3) + 0.5; },
         {1, -2, 3}},
        // The curved valley of Rosenbrock.
        {2,
         [](const double* p, int) { return sq(1 - p[0]) + 100 * sq(p[1] - p[0] * p[0]); },
         {1, 1}},
    };
    for (const auto& c : cases) {
        Landscape landscape{c.height};
        const Descent d(c.ndim, 1e-9, landscape);
        ASSERT_GE(d.best, 0);
        EXPECT_EQ(d.values[static_cast<size_t>(d.best)],
                  *std::min_element(d.values.begin(), d.values.end()));
        EXPECT_EQ(d.values[static_cast<size_t>(d.best)], c.height(d.vertices[d.best], 0));
        for (int j = 0; j < c.ndim; ++j)
            EXPECT_NEAR(d.vertices[d.best][j], c.minimum[j], 1e-3) << c.ndim << " " << j;
    }
}

TEST(Simplex, SearchesWhereItIsDone) {
    Landscape flat{[](const double*, int) { return 1.0; }};
    const struct {
        std::vector<double> values;
        int best;
    } cases[] = {
        {{3e-15, 1e-15, 2e-15}, 1}, {{9.9e-15, 0, 0}, 1}, {{1, 1, 1}, 0}, {{2, 2, 2 - 1e-8}, 2}};
    for (const auto& c : cases) {
        const Descent d(2, 1e-7, flat, c.values);
        EXPECT_EQ(d.best, c.best);
        EXPECT_EQ(d.evaluations, 0);
    }
    EXPECT_GT(Descent(2, 1e-7, flat, {1.1e-14, 0, 0}).evaluations, 0);
}

TEST(Simplex, ShrinksAwayFromTheBest) {
    Landscape steep{[](const double*, int calls) { return calls < 2 ? 10.0 : 1.0; }};
    Descent d(2, 1e-7, steep, {5, 1, 6});
    EXPECT_EQ(d.evaluations, 4);  // reflected, contracted, two vertices shrunk
    const double expected[3][2] = {{0.5, -0.5}, {1.5, -0.5}, {0.5, 0.5}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(d.vertices[i][0], expected[i][0]) << i;
        EXPECT_EQ(d.vertices[i][1], expected[i][1]) << i;
    }
}

TEST(Simplex, GivesUpTooSoonOrNever) {
    Landscape restless{[](const double*, int calls) { return 1 + std::fmod(0.618 * calls, 1.0); }};
    const Descent d(2, 1e-9, restless);
    EXPECT_EQ(d.best, -1);
    EXPECT_GE(d.evaluations, 500);
    EXPECT_LT(d.evaluations, 500 + 2 + 2);  // two trials and a shrink at most after the last check
}

}  // namespace
}  // namespace lumoxa_test
