// SPDX-License-Identifier: Apache-2.0
#include "convert/curve.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "convert/tag_stages.h"
#include "tests/support/engine_views.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

using lumoxa::engine::CurvePtr;
using lumoxa::engine::tableCurve;
using Table = std::vector<uint16_t>;

CurvePtr readFrom(const Bytes& tag) {
    const auto view = viewOf(ProfileBytes().addTag("rTRC", tag).image());
    return lumoxa::engine::readCurve(view->require(lumoxa::fourcc("rTRC")));
}

constexpr int kSteps = 1000;

struct Parameters {
    uint32_t type;
    std::vector<double> p;

    friend void PrintTo(const Parameters& parameters, std::ostream* out) {
        *out << parameters.type << ": " << testing::PrintToString(parameters.p);
    }
};

class ParametricCurve : public testing::TestWithParam<Parameters> {};

/// parametricCurveType (ICC.1:2010, 10.16).
double closedForm(const Parameters& parameters, double x) {
    const auto& p = parameters.p;
    const auto raised = [&] { return std::pow(std::max(p[1] * x + p[2], 0.0), p[0]); };
    switch (parameters.type) {
        case 0:
            return std::pow(x, p[0]);
        case 1:
            return x >= -p[2] / p[1] ? raised() : 0;
        case 2:
            return x >= -p[2] / p[1] ? raised() + p[3] : p[3];
        case 3:
            return x >= p[4] ? raised() : p[3] * x;
        default:
            return x >= p[4] ? raised() + p[5] : p[3] * x + p[6];
    }
}

TEST_P(ParametricCurve, IsTheClosedFormAndLeadsBack) {
    constexpr double kTolerance = 2e-5;  // parameters are rounded to 1/65536
    const CurvePtr curve = readFrom(parametricTag(GetParam().type, GetParam().p));
    const CurvePtr inverse = curve->inverse();
    for (int i = 0; i <= kSteps; ++i) {
        const auto x = static_cast<float>(i) / kSteps;
        const float y = curve->at(x);
        EXPECT_NEAR(y, std::clamp(closedForm(GetParam(), x), 0.0, 1.0), kTolerance) << x;
        EXPECT_NEAR(curve->at(inverse->at(y)), y, 1e-3) << x;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Types, ParametricCurve,
    testing::Values(Parameters{0, {2.2}}, Parameters{0, {0.45}}, Parameters{0, {1}},
                    Parameters{1, {2, 1.25, -0.25}}, Parameters{2, {1.8, 1, -0.5, 0.0625}},
                    Parameters{3, {2.4, 0.9479, 0.0521, 0.0774, 0.0405}},
                    Parameters{4, {1.5, 0.75, 0.25, 0.5, 0.25, -0.125, 0.0625}},
                    Parameters{4, {2, -1, 1, 0, 0, 0, 0}},  // falls
                    Parameters{0, {20}}, Parameters{3, {3, 1.5, 0, 0, 2}}));

Table ramp(size_t entries, int power = 1) {
    Table table;
    for (size_t i = 0; i < entries; ++i)
        table.push_back(static_cast<uint16_t>(std::lround(
            65535 * std::pow(static_cast<double>(i) / static_cast<double>(entries - 1), power))));
    return table;
}

Table reversed(Table table) {
    std::reverse(table.begin(), table.end());
    return table;
}

Table plateaus() {
    Table table = ramp(256);
    std::fill(table.begin() + 100, table.begin() + 150, table[100]);
    return table;
}

class TableCurveTest : public testing::TestWithParam<Table> {};

TEST_P(TableCurveTest, InterpolatesAndLeadsBack) {
    const Table& table = GetParam();
    const CurvePtr curve = readFrom(curveTag(table)), inverse = curve->inverse();
    const size_t step = std::max<size_t>(table.size() / 500, 1);
    for (size_t i = 0; i < table.size(); i += step) {
        const float y = static_cast<float>(table[i]) / 65535;
        const float x = static_cast<float>(i) / static_cast<float>(table.size() - 1);
        EXPECT_NEAR(curve->at(x), y, 1e-5);
        EXPECT_NEAR(curve->at(inverse->at(y)), y, 1e-5);
    }
    EXPECT_EQ(curve->at(inverse->at(static_cast<float>(table.front()) / 65535)),
              static_cast<float>(table.front()) / 65535);
    EXPECT_EQ(inverse->at(curve->at(0)), 0);
    EXPECT_EQ(inverse->at(curve->at(1)), 1);
}

INSTANTIATE_TEST_SUITE_P(Tables, TableCurveTest,
                         testing::Values(ramp(2), ramp(3, 2), ramp(4096, 2), ramp(65535),
                                         reversed(ramp(256, 2)), plateaus(), reversed(plateaus())));

TEST(InverseTable, StaysBetween0And1ForAnyEntries) {
    SeededRandom random(5);
    std::vector<Table> tables = {Table(256, 0), Table(65535, 65535), Table(2, 30000), {65535, 0}};
    for (const size_t entries : {2, 7, 256, 5000})
        tables.push_back(random.samples(entries));
    for (const Table& table : tables) {
        const CurvePtr inverse = tableCurve(table)->inverse();
        for (int percent = -50; percent < 150; ++percent) {
            const float y = static_cast<float>(percent) / 100.0f;
            const float x = inverse->at(y);
            EXPECT_TRUE(x >= 0 && x <= 1) << table.size() << " entries, " << y;
        }
        EXPECT_TRUE(inverse->at(std::nanf("")) >= 0);
    }
}

}  // namespace
}  // namespace lumoxa_test
