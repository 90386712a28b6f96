// SPDX-License-Identifier: Apache-2.0
#include "convert/tag_stages.h"

#include <algorithm>
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/engine_views.h"

namespace lumoxa_test {
namespace {

using lumoxa::fourcc;
using namespace lumoxa::engine;

constexpr uint32_t kRgb = fourcc("RGB "), kLab = fourcc("Lab "), kXyz = fourcc("XYZ ");
constexpr double kGammaA = 2, kGammaM = 1.5, kGammaB = 0.75;
const std::vector<double> kMatrix = {0.5, 0.25, 0, 0, 0.75, 0, 0.125, 0, 0.5, 0.0625, 0.125, 0.25};

using Colour = std::vector<float>;
const Colour kColours[] = {{0, 0, 0}, {1, 1, 1}, {0.2f, 0.5f, 0.9f}, {0.7f, 0.01f, 0.3f}};

StageList stagesOf(const Bytes& tag, uint32_t in, uint32_t out) {
    const auto view = viewOf(ProfileBytes().addTag("A2B0", tag).image());
    return lutStages(view->require(fourcc("A2B0")), in, out, "");
}

// Every combination of elements that ICC.1:2010, 10.10 and 10.11, allow: A curves stand beside a
// grid, M curves beside a matrix, B curves always.
class LutAB : public testing::TestWithParam<std::tuple<bool, bool, bool>> {
  protected:
    bool hasGrid() const { return std::get<0>(GetParam()); }
    bool hasMatrix() const { return std::get<1>(GetParam()); }
    bool aToB() const { return std::get<2>(GetParam()); }

    Bytes tag() const {
        const auto three = [](double gamma) {
            return std::vector<Bytes>(3, parametricTag(0, {gamma}));
        };
        LutABContent content;
        content.bCurves = three(kGammaB);
        if (hasMatrix()) {
            content.mCurves = three(kGammaM);
            content.matrix = kMatrix;
        }
        if (hasGrid()) {
            content.aCurves = three(kGammaA);
            content.grid = {2, 3, 4};
        }
        return aToB() ? lutAToBTag(content) : lutBToATag(content);
    }

    static void raise(double* v, double gamma) {
        for (int c = 0; c < 3; ++c)
            v[c] = std::pow(std::clamp(v[c], 0.0, 1.0), gamma);
    }
    void multiply(double* v) const {
        const double in[3] = {v[0], v[1], v[2]};
        for (size_t r = 0; r < 3; ++r) {
            v[r] = kMatrix[9 + r];
            for (size_t c = 0; c < 3; ++c)
                v[r] += kMatrix[3 * r + c] * in[c];
        }
    }
    /// By hand, with a grid that repeats its input.
    void convert(double* v) const {
        if (aToB()) {
            if (hasGrid()) raise(v, kGammaA);
            if (hasMatrix()) {
                raise(v, kGammaM);
                multiply(v);
            }
            raise(v, kGammaB);
        } else {
            raise(v, kGammaB);
            if (hasMatrix()) {
                multiply(v);
                raise(v, kGammaM);
            }
            if (hasGrid()) raise(v, kGammaA);
        }
    }
};

TEST_P(LutAB, RunsItsElementsInOrder) {
    const StageList stages = stagesOf(tag(), kRgb, kRgb);
    for (const Colour& colour : kColours) {
        double wanted[3] = {colour[0], colour[1], colour[2]};
        convert(wanted);
        const Colour result = through(stages, colour, 3);
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(result[c], wanted[c], 3e-5);
    }
}

INSTANTIATE_TEST_SUITE_P(Combinations, LutAB,
                         testing::Combine(testing::Bool(), testing::Bool(), testing::Bool()));

/// A number 0..1 of a tag in a connection space: the type decides how it is encoded.
struct Encoding {
    const char* name;
    Bytes tag;
    uint32_t space;
    Colour zero, one;  // what the numbers 0 and 1 mean

    friend void PrintTo(const Encoding& encoding, std::ostream* out) { *out << encoding.name; }
};

class ConnectionSpaceOf : public testing::TestWithParam<Encoding> {};

TEST_P(ConnectionSpaceOf, IsEncodedByTheTypeOfTheTag) {
    const Encoding& e = GetParam();
    const StageList from = stagesOf(e.tag, kRgb, e.space), to = stagesOf(e.tag, e.space, kRgb);
    for (const Colour& colour : kColours) {
        const Colour decoded = through(from, colour, 3);
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(decoded[c], e.zero[c] + (e.one[c] - e.zero[c]) * colour[c], 5e-3);
        const Colour again = through(to, decoded, 3);
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(again[c], colour[c], 3e-5);
    }
}

constexpr float kLegacy = 65535.0f / 65280.0f, kXyzTop = 65535.0f / 32768.0f;

INSTANTIATE_TEST_SUITE_P(
    Types, ConnectionSpaceOf,
    testing::Values(Encoding{"lut16Lab",
                             lut16Tag({}),
                             kLab,
                             {0, -128, -128},
                             {100 * kLegacy, 255 * kLegacy - 128, 255 * kLegacy - 128}},
                    Encoding{"lut8Lab", lut8Tag({}), kLab, {0, -128, -128}, {100, 127, 127}},
                    Encoding{"lutAToBLab",
                             lutAToBTag({3, 3, 2, {}, {}, {}, {}, {2, 2, 2}}),
                             kLab,
                             {0, -128, -128},
                             {100, 127, 127}},
                    Encoding{
                        "lut16XYZ", lut16Tag({}), kXyz, {0, 0, 0}, {kXyzTop, kXyzTop, kXyzTop}},
                    Encoding{"lut8XYZ", lut8Tag({}), kXyz, {0, 0, 0}, {kXyzTop, kXyzTop, kXyzTop}}),
    [](const auto& entry) { return entry.param.name; });

}  // namespace
}  // namespace lumoxa_test
