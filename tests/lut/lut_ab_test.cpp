// SPDX-License-Identifier: Apache-2.0
//
// Conversions through lutAToB and lutBToA tags.
#include <cmath>
#include <functional>
#include <map>

#include <gtest/gtest.h>

#include "tests/support/reference_lut.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

struct TestCurve {
    Bytes tag;
    std::function<double(double)> value;  // 0..1 to 0..65535
};

TestCurve sampled(uint32_t entries, uint32_t seed) {
    SeededRandom random(seed);
    std::vector<uint16_t> t;
    for (uint32_t v = 300; t.size() < entries; v += random.upTo(60000 / entries)) {
        t.push_back(static_cast<uint16_t>(v));
    }
    return {curveTag(t), [t](double x) {
                const double p = x * double(t.size() - 1);
                const auto k = std::min(static_cast<size_t>(p), t.size() - 2);
                return t[k] + (double(t[k + 1]) - t[k]) * (p - double(k));
            }};
}

TestCurve parametricCurve(uint32_t function, std::vector<double> p) {
    const auto value = [=](double x) { return parametric(function, p, x, 65535, 65535); };
    return {parametricTag(function, p),
            [=](double x) { return std::clamp(value(x), 0.0, 65535.0); }};
}

// The sets that the cases name by a letter.
const std::map<char, std::vector<TestCurve>> kCurveSets = {
    {'-', {}},
    {'s', {sampled(2, 1), sampled(17, 2), sampled(700, 3), sampled(5, 4), sampled(33, 5)}},
    {'l', {sampled(1024, 1), sampled(1024, 2), sampled(1024, 3)}},
    {'k', {sampled(16, 1), sampled(16, 2), sampled(16, 3)}},
    {'g',
     {{curveTag({461}), [](double x) { return 65535 * std::pow(x, 461 / 256.0); }},
      {curveTag({}), [](double x) { return 65535 * x; }},
      parametricCurve(4, {1.5, 0.75, 0.25, 0.5, 0.25, -0.125, 0.0625})}},
    {'p',
     {parametricCurve(1, {2, 1.25, -0.25}), parametricCurve(2, {2, 1, -0.5, 0.0625}),
      parametricCurve(3, {2, 0.9375, 0.0625, 0.25, 0.125})}},
};

std::vector<TestCurve> curveSet(char kind, size_t n) {
    std::vector<TestCurve> set = kCurveSets.at(kind);
    set.resize(std::min(n, set.size()));
    return set;
}

std::vector<Bytes> tagsOf(const std::vector<TestCurve>& set) {
    std::vector<Bytes> tags;
    for (const TestCurve& c : set)
        tags.push_back(c.tag);
    return tags;
}

std::vector<ReferenceLut::Table> tablesOf(const std::vector<TestCurve>& set, int entries = 4096) {
    std::vector<ReferenceLut::Table> tables(set.size());
    for (size_t c = 0; c < set.size(); ++c) {
        for (int i = 0; i < entries; ++i) {
            tables[c].push_back(float(std::floor(set[c].value(double(i) / (entries - 1)) + 0.5)));
        }
    }
    return tables;
}

// L* 0..100 of a version 4 table ends at 65535, that of the samples at 65280.
ReferenceLut::Table forLegacyInput(const ReferenceLut::Table& t) {
    ReferenceLut::Table out;
    const int n = std::max(static_cast<int>(t.size()), 257);
    for (int i = 0; i < n; ++i) {
        const float x = std::min(1.0f, float(i) / float(n - 1) * 1.0039063f);
        out.push_back(std::floor(lookup(t, x * float(t.size() - 1)) + 0.5f));
    }
    return out;
}

struct Case {
    const char* name;
    bool toB;
    const char *in, *out;
    std::vector<uint8_t> grid;
    char first = '-', last = '-';  // A and B curves of 'mAB ', B and A curves of 'mBA '
    bool matrixAndMCurves = false;
    int tolerance = 0;  // where curves of the reference come from double precision
    uint32_t precision = 2;
    int ownEntries = 4096;  // of curves that keep their entries
};

const Case kCases[] = {
    {"UnequalGrid", true, "RGB ", "XYZ ", {5, 2, 9}, 's', 's'},
    {"UnequalGrid8", true, "RGB ", "XYZ ", {5, 2, 9}, 's', 's', false, 0, 1},
    {"UnequalGridOfFour", true, "CMYK", "XYZ ", {3, 5, 2, 4}, 's', 's'},
    {"UnequalGridOfFour8", true, "CMYK", "XYZ ", {3, 5, 2, 4}, 's', 's', false, 0, 1},
    {"UnequalGridOfFive", true, "5CLR", "XYZ ", {2, 3, 2, 4, 2}, 's', 's'},
    {"AppliesWhatFollowsTheGrid", true, "RGB ", "XYZ ", {3, 3, 3}, '-', 's', true},
    {"GridAlone", true, "RGB ", "XYZ ", {4, 3, 2}},
    {"CurvesAlone", true, "RGB ", "XYZ ", {}, '-', 's'},
    {"ChannelsWithoutSource", true, "2CLR", "XYZ ", {}, '-', 's'},
    {"LabOutput", true, "RGB ", "Lab ", {3, 3, 3}, '-', 's', false, 1},
    {"LabOutputWithoutCurves", true, "RGB ", "Lab ", {3, 3, 3}, '-', '-', false, 1},
    {"MatrixAndMCurves", false, "XYZ ", "RGB ", {3, 5, 4}, 's', 's', true, 1},
    {"LabInputLong", false, "Lab ", "RGB ", {5, 4, 3}, 'l', '-', false, 0, 2, 1024},
    {"LabInputShort", false, "Lab ", "RGB ", {5, 4, 3}, 'k', '-', false, 0, 2, 16},
    {"LabInputMixed", false, "Lab ", "RGB ", {5, 4, 3}, 's', '-', false, 1},
    {"GammaAndParametric", false, "XYZ ", "RGB ", {2, 2, 2}, 'g', 'p', false, 2},
};

class LutAB : public testing::TestWithParam<Case> {};

TEST_P(LutAB, StraysFromTheReference) {
    const Case& c = GetParam();
    const bool inLab = c.in == std::string("Lab "), outLab = c.out == std::string("Lab ");
    LutABContent content;
    ReferenceLut reference;
    reference.inIsPcs = !c.toB, reference.outIsPcs = c.toB;
    content.inputs = c.in[0] == 'C' ? 4 : c.in[0] == '5' ? 5 : c.in[0] == '2' ? 2 : 3;
    reference.inputs = content.inputs;
    const auto first = curveSet(c.first, content.inputs), last = curveSet(c.last, 3);
    (c.toB ? content.aCurves : content.bCurves) = tagsOf(first);
    (c.toB ? content.bCurves : content.aCurves) = tagsOf(last);
    reference.first = tablesOf(first, c.ownEntries);
    reference.last = tablesOf(last);
    if (c.matrixAndMCurves) {
        const auto m = curveSet('s', 3);
        content.mCurves = tagsOf(m);
        content.matrix = {0.75,  0.125, -0.125, 0.25,   0.875,  0.125,
                          -0.25, 0.125, 1.125,  0.0625, -0.125, 0};
        // Of an 'mAB ' tag they are not applied. Offsets are on the scale of the samples, their
        // s15Fixed16 integer being taken as it stands: 0.0625 is 4096.
        if (!c.toB) {
            reference.middle = tablesOf(m);
            reference.matrix = {{0.75f, 0.125f, -0.125f, 4096},
                                {0.25f, 0.875f, 0.125f, -8192},
                                {-0.25f, 0.125f, 1.125f, 0}};
        }
    }
    size_t points = c.grid.empty() ? 0 : 3;
    for (const uint8_t g : c.grid)
        points *= g;
    content.grid = c.grid;
    content.precision = c.precision;
    content.clut = SeededRandom(3).samples(points);
    reference.grid.assign(c.grid.begin(), c.grid.end());
    for (const uint16_t v : content.clut)
        reference.clut.push_back(c.precision == 1 ? v >> 8 : v);
    reference.clutMax = c.precision == 1 ? 255 : 65535;
    for (auto& t : reference.first) {
        if (inLab) t = forLegacyInput(t);
    }
    if (outLab && reference.last.empty()) reference.last.assign(3, {0, 65535});
    for (auto& t : reference.last) {
        for (float& v : t)
            v = outLab ? std::floor(v * 65280 / 65535 + 0.5f) : v;
    }

    const Bytes tag = c.toB ? lutAToBTag(content) : lutBToATag(content);
    const OwnedXform xform = requested(lutProfile(tag, c.in, c.out), 0, icDeviceToPcs);
    Samples pixels = SeededRandom(7).samples(size_t{500} * content.inputs);
    for (const uint16_t end : {0, 65535})
        pixels.insert(pixels.end(), content.inputs, end);
    expectNear(xform, pixels, reference.convert(pixels, 16, 16), c.tolerance);
    EXPECT_LE(
        largestDifference(converted(xform.get(), pixels, 16, 8), reference.convert(pixels, 16, 8)),
        c.tolerance > 0);
    if (!c.toB || c.first == '-') return;
    for (uint16_t& v : pixels)
        v = v >> 8;  // input curves take the samples of either depth
    EXPECT_EQ(converted(xform.get(), pixels, 8, 16), reference.convert(pixels, 8, 16));
}

INSTANTIATE_TEST_SUITE_P(Tags, LutAB, testing::ValuesIn(kCases),
                         [](const auto& c) { return c.param.name; });

}  // namespace
}  // namespace lumoxa_test
