// SPDX-License-Identifier: Apache-2.0
//
// LUT tags of every type and number of inputs, and the choice among them by intent.
#include "tests/bytes/rows.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

const std::string kInputs[] = {"GRAY", "2CLR", "RGB ", "Lab ", "XYZ ", "CMYK", "5CLR", "6CLR"};
const std::string kOutputs[] = {"Lab ", "CMYK", "GRAY", "RGB ", "XYZ ", "5CLR"};
constexpr uint32_t kGrids[] = {18, 9, 6, 4, 3, 2};  // by number of inputs

uint32_t channelsOf(const std::string& space) {
    if (space[0] <= '9') return static_cast<uint32_t>(space[0] - '0');
    return space == "GRAY" ? 1 : space == "CMYK" ? 4 : 3;
}

/// Curves and grid of noise, and a matrix that acts on XYZ.
Bytes noisyTag(bool lut8, uint32_t inputs, uint32_t outputs, uint32_t seed) {
    SeededRandom random(seed);
    LutContent c{inputs, outputs, kGrids[inputs - 1], lut8 ? 256U : 33U, lut8 ? 256U : 129U};
    c.matrix = {0.875, 0.25, -0.125, -0.375, 1.25, 0.125, 0.0625, 0.5, 0.5};
    c.inTables = random.samples(size_t{c.inEntries} * inputs);
    c.clut = random.samples(power(c.grid, inputs) * outputs);
    c.outTables = random.samples(size_t{c.outEntries} * outputs);
    return lut8 ? lut8Tag(c) : lut16Tag(c);
}

struct ABCase {
    std::string type, in, out;
    std::vector<uint8_t> grid;
    std::string a, m, b;  // curves by letters
    uint32_t precision = 2;
};

const ABCase kABCases[] = {{"mAB", "2CLR", "XYZ ", {9, 4}, "sg", "", "l0h"},
                           {"mAB", "RGB ", "XYZ ", {4, 3, 2}, "", "", ""},
                           {"mAB", "RGB ", "Lab ", {5, 2, 9}, "sls", "", "s4l"},
                           {"mAB", "RGB ", "Lab ", {5, 2, 9}, "sls", "", "s4l", 1},
                           {"mAB", "RGB ", "XYZ ", {3, 3, 3}, "gih", "123", "024"},
                           {"mAB", "RGB ", "XYZ ", {}, "", "", "123"},
                           {"mAB", "CMYK", "Lab ", {3, 5, 2, 4}, "slg3", "", "312"},
                           {"mAB", "5CLR", "Lab ", {2, 3, 2, 4, 2}, "sghi0", "", "gsh"},
                           {"mBA", "XYZ ", "RGB ", {3, 5, 4}, "sls", "lsl", "lls"},
                           {"mBA", "XYZ ", "RGB ", {3, 5, 4}, "ghi", "123", "034"},
                           {"mBA", "Lab ", "CMYK", {5, 4, 3}, "slsl", "", "lll"},
                           {"mBA", "Lab ", "RGB ", {5, 4, 3}, "g3h", "", "kkk", 1}};

Bytes abTag(const ABCase& c) {
    LutABContent content{channelsOf(c.in), channelsOf(c.out), c.precision,
                         curves(c.a),      curves(c.m),       curves(c.b)};
    if (!c.m.empty())
        content.matrix = {0.75,  0.125, -0.125, 0.25,   0.875,  0.125,
                          -0.25, 0.125, 1.125,  0.0625, -0.125, 0};
    size_t points = content.outputs;
    for (const uint8_t g : c.grid)
        points *= g;
    content.grid = c.grid;
    content.clut = SeededRandom(3).samples(points);
    return c.type == "mAB" ? lutAToBTag(content) : lutBToATag(content);
}

}  // namespace

Rows lutRows() {
    Rows rows;
    for (size_t i = 0; i < 4 * std::size(kInputs); ++i) {
        const bool lut8 = i / 2 % 2 == 0;
        const std::string &in = kInputs[i / 4], &out = kOutputs[(i / 4 + i * 3 + lut8) % 6];
        const Bytes tag = noisyTag(lut8, channelsOf(in), channelsOf(out), uint32_t(i));
        addRowsByDepth(rows, (lut8 ? "mft1," : "mft2,") + in.substr(0, 3) + "," + out.substr(0, 3),
                       requested(lutProfile(tag, in, out), 0, icDeviceToPcs).get());
    }
    return rows;
}

Rows lutABRows() {
    Rows rows;
    for (const ABCase& c : kABCases) {
        const std::string name = c.type + "," + c.a + "," + c.m + "," + c.b + ",";
        rows.push_back({name + std::to_string(c.precision), {}});
        const ProfileBytes profile = lutProfile(abTag(c), c.in, c.out);
        addInAllDepths(rows.back().hash, requested(profile, 0, icDeviceToPcs).get());
    }
    return rows;
}

Rows intentRows() {
    ProfileBytes profile("prtr", "RGB ", "Lab ");
    for (uint32_t i = 0; i < 3; ++i) {
        profile.addTag("A2B" + std::to_string(i), noisyTag(false, 3, 3, i));
        profile.addTag("B2A" + std::to_string(i), noisyTag(true, 3, 3, i));
    }
    profile.addTag("gamt", noisyTag(false, 3, 1, 9)).addTag("wtpt", xyzTag(0.8, 0.85, 0.7));
    Rows rows;
    for (uint32_t i = 0; i < 12; ++i) {
        const uint32_t direction = icDeviceToPcs + i % 3, intent = i / 3;
        rows.push_back({std::to_string(direction) + "," + std::to_string(intent), {}});
        addInAllDepths(rows.back().hash, requested(profile, intent, direction).get());
    }
    return rows;
}

}  // namespace lumoxa_test
