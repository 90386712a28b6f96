// SPDX-License-Identifier: Apache-2.0
//
// Conversions through lut8, lut16, lutAToB and lutBToA tags of every shape.
#include <array>

#include "tests/support/reference_lut.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

struct Shape {
    bool lut8;
    uint32_t inputs, outputs;
    std::string inSpace, outSpace;
};

// Each number of inputs and outputs, and the connection spaces on either side.
const Shape kShapes[] = {
    {true, 1, 3, "GRAY", "Lab "},  {false, 1, 4, "GRAY", "CMYK"}, {true, 2, 1, "2CLR", "GRAY"},
    {false, 2, 3, "2CLR", "XYZ "}, {true, 3, 3, "RGB ", "Lab "},  {false, 3, 3, "RGB ", "RGB "},
    {true, 3, 4, "Lab ", "CMYK"},  {false, 3, 3, "Lab ", "XYZ "}, {true, 3, 3, "XYZ ", "RGB "},
    {false, 3, 3, "XYZ ", "Lab "}, {true, 4, 3, "CMYK", "XYZ "},  {false, 4, 3, "CMYK", "Lab "},
    {true, 4, 4, "CMYK", "CMYK"},  {false, 3, 1, "RGB ", "GRAY"}, {false, 5, 3, "5CLR", "Lab "},
    {true, 5, 4, "5CLR", "CMYK"},  {false, 3, 6, "RGB ", "6CLR"}, {true, 4, 5, "CMYK", "5CLR"}};

// Parabolas, each channel's bent otherwise.
Samples risingTables(uint32_t channels, uint32_t entries) {
    Samples tables;
    for (uint32_t i = 0; i < channels * entries; ++i) {
        const uint32_t entry = i % entries, channel = i / entries;
        const double t = entry / (entries - 1.0), bend = 0.1 * (channel + 1);
        tables.push_back(static_cast<uint16_t>(65535 * (t + bend * t * (1 - t))));
    }
    return tables;
}

LutContent randomContent(const Shape& s, SeededRandom& random) {
    LutContent c;
    c.inputs = s.inputs, c.outputs = s.outputs;
    c.grid = std::array{18U, 9U, 6U, 4U, 3U}.at(s.inputs - 1);
    c.inEntries = s.lut8 ? 256 : 33;
    c.outEntries = s.lut8 ? 256 : 129;
    if (s.inputs == 3) c.matrix = {0.9, 0.3, -0.2, -0.4, 1.2, 0.1, 0.0625, 0.5, 0.5};
    c.inTables = risingTables(c.inputs, c.inEntries);
    c.clut = random.samples(power(c.grid, c.inputs) * c.outputs);
    c.outTables = risingTables(c.outputs, c.outEntries);
    return c;
}

// Random pixels, the ends, and pixels whose fractions are equal in some or all dimensions. A lut8
// table ends at 65280 for connection-space samples; what lies beyond is a test of its own.
Samples probes(const Shape& s, int bits, SeededRandom& random) {
    const bool pcs = s.inSpace == "Lab " || s.inSpace == "XYZ ";
    const uint32_t top = bits == 8 ? 255 : s.lut8 && pcs ? 65280 : 65535;
    Samples pixels = random.samples(size_t{300} * s.inputs, top);
    for (int k = 0; k < 60; ++k) {
        const uint16_t levels[2] = {random.upTo(top), static_cast<uint16_t>(k % 3 == 0 ? top : 0)};
        for (uint32_t i = 0; i < s.inputs; ++i)
            pixels.push_back(levels[random.upTo(3) == 0]);
    }
    return pixels;
}

TEST(LutKernels, GiveWhatTheReferenceGives) {
    for (const Shape& s : kShapes) {
        SeededRandom random(s.inputs * 100 + s.outputs * 10 + s.lut8);
        const LutContent content = randomContent(s, random);
        const ReferenceLut reference = ReferenceLut::of(content, s.lut8, s.inSpace, s.outSpace);
        const Bytes tag = s.lut8 ? lut8Tag(content) : lut16Tag(content);
        const OwnedXform xform =
            requested(lutProfile(tag, s.inSpace, s.outSpace), 0, icDeviceToPcs);
        for (const int in : {8, 16}) {
            for (const int out : {8, 16}) {
                const Samples pixels = probes(s, in, random);
                EXPECT_LE(largestDifference(converted(xform.get(), pixels, in, out),
                                            reference.convert(pixels, in, out)),
                          1)
                    << s.inSpace << in << " to " << s.outSpace << out << " bits";
            }
        }
    }
}

// Samples above 0xFF00 lie beyond the end of a lut8 table for Lab. Wherever its last segment leads,
// the grid must not be read outside.
TEST(LutKernels, StayInsideTheGridBeyondLabWhite) {
    for (const uint16_t last : {0, 65535}) {
        for (const uint32_t n : {1U, 3U, 4U}) {
            LutContent c;
            c.inputs = n, c.grid = 5;
            c.inTables.assign(size_t{n} * 256, static_cast<uint16_t>(65535 - last));
            for (uint32_t i = 1; i <= n; ++i)
                c.inTables[i * 256 - 1] = last;
            const OwnedXform xform =
                requested(lutProfile(lut8Tag(c), "Lab ", "RGB "), 0, icDeviceToPcs);
            EXPECT_EQ(converted(xform.get(), Samples(size_t{10} * n, 65535)).size(), 30U);
        }
    }
}

// ---- lutAToB and lutBToA ----

struct Case {
    bool toB;
    const char *in, *out;
    std::vector<uint8_t> grid;
    bool first = true, last = true;  // A and B curves of 'mAB ', B and A curves of 'mBA '
    bool matrixAndMCurves = false;
    uint32_t precision = 2;
};

const Case kCases[] = {
    {true, "RGB ", "XYZ ", {5, 2, 9}},
    {true, "CMYK", "XYZ ", {3, 5, 2, 4}, true, true, false, 1},
    {true, "5CLR", "XYZ ", {2, 3, 2, 4, 2}},
    {true, "RGB ", "XYZ ", {4, 3, 2}, false, false},
    {true, "2CLR", "XYZ ", {}, false, true},  // one channel without a source
    {true, "RGB ", "Lab ", {3, 3, 3}, false, true, true},
    {false, "XYZ ", "RGB ", {3, 5, 4}, true, true, true},
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

// What the library reads from them: tables of one length, ending at 0xFF00 for Lab.
std::vector<ReferenceLut::Table> tablesOf(const std::vector<Samples>& set, double scale = 1) {
    constexpr int kEntries = 4096;
    std::vector<ReferenceLut::Table> tables(set.size());
    for (size_t c = 0; c < set.size(); ++c) {
        const ReferenceLut::Table entries = unitTable(set[c]);
        for (int i = 0; i < kEntries; ++i) {
            const double v = lookup(entries, i / (kEntries - 1.0));
            tables[c].push_back(scale * std::round(v * 65535) / 65535);
        }
    }
    return tables;
}

void expectReference(const Case& c) {
    SCOPED_TRACE(std::string(c.in) + c.out);
    LutABContent content;
    ReferenceLut reference;
    reference.inIsPcs = !c.toB, reference.outIsPcs = c.toB;
    content.inputs = c.in[0] == 'C' ? 4 : c.in[0] == '5' ? 5 : c.in[0] == '2' ? 2 : 3;
    reference.inputs = content.inputs;
    const auto first = curves(c.first ? content.inputs : 0), last = curves(c.last ? 3 : 0);
    (c.toB ? content.aCurves : content.bCurves) = tagsOf(first);
    (c.toB ? content.bCurves : content.aCurves) = tagsOf(last);
    reference.first = tablesOf(first);
    reference.last = tablesOf(last, c.out == std::string("Lab ") ? 65280 / 65535.0 : 1);
    if (c.matrixAndMCurves) {
        const auto m = curves(3);
        content.mCurves = tagsOf(m);
        content.matrix = {0.75,  0.125, -0.125, 0.25,   0.875,  0.125,
                          -0.25, 0.125, 1.125,  0.0625, -0.125, 0};
        // Of an 'mAB ' tag they are not applied. Offsets are on the scale of the samples, their
        // s15Fixed16 integer being taken as it stands: 0.0625 is 4096.
        if (!c.toB) {
            reference.middle = tablesOf(m);
            reference.matrix = {{0.75, 0.125, -0.125, 4096 / 65535.0},
                                {0.25, 0.875, 0.125, -8192 / 65535.0},
                                {-0.25, 0.125, 1.125, 0}};
        }
    }
    size_t points = c.grid.empty() ? 0 : 3;
    for (const uint8_t g : c.grid)
        points *= g;
    content.grid = c.grid;
    content.precision = c.precision;
    content.clut = SeededRandom(3).samples(points);
    reference.grid = c.grid;
    reference.clut = unitTable(content.clut, c.precision == 1);

    const Bytes tag = c.toB ? lutAToBTag(content) : lutBToATag(content);
    const OwnedXform xform = requested(lutProfile(tag, c.in, c.out), 0, icDeviceToPcs);
    Samples pixels = SeededRandom(7).samples(size_t{500} * content.inputs);
    for (const uint16_t end : {0, 65535})
        pixels.insert(pixels.end(), content.inputs, end);
    const auto expectBits = [&](int in, int out) {
        const Samples result = converted(xform.get(), pixels, in, out);
        EXPECT_LE(largestDifference(result, reference.convert(pixels, in, out)), 1);
    };
    expectBits(16, 16);
    expectBits(16, 8);
    if (!c.toB || !c.first) return;
    for (uint16_t& v : pixels)
        v = v >> 8;  // input curves take the samples of either depth
    expectBits(8, 16);
}

TEST(LutAB, GivesWhatTheReferenceGives) {
    for (const Case& c : kCases)
        expectReference(c);
}

}  // namespace
}  // namespace lumoxa_test
