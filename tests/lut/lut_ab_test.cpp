// SPDX-License-Identifier: Apache-2.0
//
// Conversions through lutAToB and lutBToA tags.
#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/reference_lut.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

struct Case {
    bool toB;
    const char *in, *out;
    std::vector<uint8_t> grid;
    bool first = true, last = true;  // A and B curves of 'mAB ', B and A curves of 'mBA '
    bool matrixAndMCurves = false;
    int tolerance = 0;  // where curves of the reference come from double precision
    uint32_t precision = 2;
};

const Case kCases[] = {
    {true, "RGB ", "XYZ ", {5, 2, 9}},
    {true, "CMYK", "XYZ ", {3, 5, 2, 4}, true, true, false, 0, 1},
    {true, "5CLR", "XYZ ", {2, 3, 2, 4, 2}},
    {true, "RGB ", "XYZ ", {4, 3, 2}, false, false},
    {true, "2CLR", "XYZ ", {}, false, true},  // one channel without a source
    {true, "RGB ", "Lab ", {3, 3, 3}, false, true, true, 1},
    {false, "XYZ ", "RGB ", {3, 5, 4}, true, true, true, 1},
};

// Rising tables of different lengths.
std::vector<Samples> curves(size_t channels) {
    const uint32_t entries[] = {2, 17, 700, 5, 33};
    std::vector<Samples> set(channels);
    for (size_t c = 0; c < channels; ++c) {
        SeededRandom random(entries[c]);
        for (uint32_t v = 300; set[c].size() < entries[c]; v += random.upTo(60000 / entries[c]))
            set[c].push_back(static_cast<uint16_t>(v));
    }
    return set;
}

std::vector<Bytes> tagsOf(const std::vector<Samples>& set) {
    std::vector<Bytes> tags;
    for (const Samples& table : set)
        tags.push_back(curveTag(table));
    return tags;
}

// What the library reads from them: tables of one length.
std::vector<ReferenceLut::Table> tablesOf(const std::vector<Samples>& set) {
    constexpr int kEntries = 4096;
    std::vector<ReferenceLut::Table> tables(set.size());
    for (size_t c = 0; c < set.size(); ++c) {
        for (int i = 0; i < kEntries; ++i) {
            const double p = double(i) / (kEntries - 1) * double(set[c].size() - 1);
            const auto k = std::min(static_cast<size_t>(p), set[c].size() - 2);
            const double rise = set[c][k + 1] - set[c][k];
            tables[c].push_back(float(std::floor(set[c][k] + rise * (p - double(k)) + 0.5)));
        }
    }
    return tables;
}

void expectReference(const Case& c) {
    SCOPED_TRACE(std::string(c.in) + c.out);
    const bool outLab = c.out == std::string("Lab ");
    LutABContent content;
    ReferenceLut reference;
    reference.inIsPcs = !c.toB, reference.outIsPcs = c.toB;
    content.inputs = c.in[0] == 'C' ? 4 : c.in[0] == '5' ? 5 : c.in[0] == '2' ? 2 : 3;
    reference.inputs = content.inputs;
    const auto first = curves(c.first ? content.inputs : 0), last = curves(c.last ? 3 : 0);
    (c.toB ? content.aCurves : content.bCurves) = tagsOf(first);
    (c.toB ? content.bCurves : content.aCurves) = tagsOf(last);
    reference.first = tablesOf(first);
    reference.last = tablesOf(last);
    if (c.matrixAndMCurves) {
        const auto m = curves(3);
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
    if (!c.toB || !c.first) return;
    for (uint16_t& v : pixels)
        v = v >> 8;  // input curves take the samples of either depth
    EXPECT_EQ(converted(xform.get(), pixels, 8, 16), reference.convert(pixels, 8, 16));
}

TEST(LutAB, StraysFromTheReference) {
    for (const Case& c : kCases)
        expectReference(c);
}

}  // namespace
}  // namespace lumoxa_test
