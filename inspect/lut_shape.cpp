// SPDX-License-Identifier: Apache-2.0
#include "inspect/lut_shape.h"

#include <algorithm>

#include "profile/signatures.h"

namespace lumoxa::inspection {
namespace {

constexpr uint64_t kNoFileHolds = uint64_t{1} << 40;
constexpr uint64_t kMatrixAt = 12;
constexpr uint64_t kLut8Bytes = 48, kLut16Bytes = 52, kLutAbBytes = 32;
constexpr uint32_t kLut8Entries = 256;
constexpr uint32_t kMostInputs = 16;  // of a CLUT in lutAtoB and lutBtoA
constexpr uint64_t kClutHead = 20;    // 16 grid counts, the precision and three reserved bytes
constexpr uint64_t kMatrixBytes = 48;
constexpr uint64_t kLeastCurve = 12;

uint64_t limitedProduct(uint64_t a, uint64_t b) {
    return b != 0 && a > kNoFileHolds / b ? kNoFileHolds : a * b;
}

uint64_t clutValues(const LutShape& shape) {
    uint64_t values = shape.outputs;
    for (const uint32_t points : shape.grid)
        values = limitedProduct(values, points);
    return values;
}

bool isIdentity(ByteView matrix) {
    constexpr uint32_t kOne = 0x10000;  // in s15Fixed16
    for (uint64_t i = 0; i < 9; ++i) {
        if (matrix.u32(4 * i) != (i % 4 == 0 ? kOne : 0)) return false;
    }
    return true;
}

void readTables(ByteView tag, LutShape& shape) {
    const bool wide = shape.type == kTypeLut16;
    shape.grid.assign(shape.inputs, tag.u8(10));
    shape.inputEntries = wide ? tag.u16(48) : kLut8Entries;
    shape.outputEntries = wide ? tag.u16(50) : kLut8Entries;
    shape.precision = wide ? 16 : 8;
    shape.matrixActs = !isIdentity(tag.part(kMatrixAt, 36));
    const uint64_t values = clutValues(shape) + uint64_t{shape.inputs} * shape.inputEntries +
                            uint64_t{shape.outputs} * shape.outputEntries;
    shape.bytes = (wide ? kLut16Bytes : kLut8Bytes) + values * (wide ? 2 : 1);
}

// The side of the connection space holds matrix and M curves: the output of lutAtoB, the input of
// lutBtoA.
void readElements(ByteView tag, LutShape& shape) {
    const bool aToB = shape.type == kTypeLutAToB;
    const uint64_t device = aToB ? shape.inputs : shape.outputs;
    const uint64_t pcs = aToB ? shape.outputs : shape.inputs;
    const uint64_t clut = tag.u32(24);
    if (clut != 0) {
        for (uint32_t i = 0; i < std::min(shape.inputs, kMostInputs); ++i)
            shape.grid.push_back(tag.u8(clut + i));
        shape.precision = 8 * tag.u8(clut + 16);
    }
    const uint64_t clutBytes = kClutHead + limitedProduct(clutValues(shape), shape.precision / 8);
    shape.elements = {{"A curves", 28, tag.u32(28), kLeastCurve * device},
                      {"CLUT", 24, clut, clutBytes},
                      {"M curves", 20, tag.u32(20), kLeastCurve * pcs},
                      {"matrix", 16, tag.u32(16), kMatrixBytes},
                      {"B curves", 12, tag.u32(12), kLeastCurve * pcs}};
    if (!aToB) std::reverse(shape.elements.begin(), shape.elements.end());
    shape.bytes = kLutAbBytes;
    for (const LutElement& element : shape.elements) {
        if (element.at != 0) shape.bytes = std::max(shape.bytes, element.at + element.bytes);
    }
}

}  // namespace

LutShape lutShape(ByteView tag) {
    LutShape shape;
    shape.type = tag.u32(0);
    shape.inputs = tag.u8(8);
    shape.outputs = tag.u8(9);
    shape.known = true;
    if (shape.type == kTypeLut8 || shape.type == kTypeLut16) {
        readTables(tag, shape);
    } else if (shape.type == kTypeLutAToB || shape.type == kTypeLutBToA) {
        readElements(tag, shape);
    } else {
        shape.known = false;
    }
    return shape;
}

}  // namespace lumoxa::inspection
