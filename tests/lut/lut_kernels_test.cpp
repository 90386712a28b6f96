// SPDX-License-Identifier: Apache-2.0
//
// Conversions through lut8 and lut16 tags of every shape.
#include <array>

#include <gtest/gtest.h>

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
    {true, 5, 4, "5CLR", "CMYK"}};

LutContent randomContent(const Shape& s, SeededRandom& random) {
    LutContent c;
    c.inputs = s.inputs, c.outputs = s.outputs;
    c.grid = std::array{18U, 9U, 6U, 4U, 3U}.at(s.inputs - 1);
    c.inEntries = s.lut8 ? 256 : 33;
    c.outEntries = s.lut8 ? 256 : 129;
    if (s.inputs == 3) c.matrix = {0.9, 0.3, -0.2, -0.4, 1.2, 0.1, 0.0625, 0.5, 0.5};
    c.inTables = random.samples(size_t{c.inEntries} * c.inputs);
    c.clut = random.samples(power(c.grid, c.inputs) * c.outputs);
    c.outTables = random.samples(size_t{c.outEntries} * c.outputs);
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

TEST(LutKernels, StrayFromTheReference) {
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
                EXPECT_EQ(converted(xform.get(), pixels, in, out),
                          reference.convert(pixels, in, out))
                    << s.inSpace << in << " to " << s.outSpace << out << " bits";
            }
        }
    }
}

// Samples above 0xFF00 lie beyond the end of a lut8 table for Lab. Wherever its last segment leads,
// the grid must not be read outside.
TEST(LutKernels, ReadOutsideTheGridBeyondLabWhite) {
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

}  // namespace
}  // namespace lumoxa_test
