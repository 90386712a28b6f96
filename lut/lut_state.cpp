// SPDX-License-Identifier: Apache-2.0
#include "lut/lut_state.h"

#include <algorithm>

#include "lut/curve_sampling.h"

namespace lumoxa {
namespace {

using namespace lut_layout;

constexpr int kCurveSamples = 4096;  // entries of each sampled 'mAB ' or 'mBA ' curve
constexpr int32_t kFixedOne = 0x10000;

const uint16_t* words(const uint8_t* at) {
    return reinterpret_cast<const uint16_t*>(at);
}

/// Reads nine or twelve s15Fixed16 values, row by row, then the offsets if there are any.
void readMatrix(const TagView& tag, uint32_t at, bool withOffsets, icLutState_t& s) {
    const auto fixed = [&](int i) {
        return static_cast<int32_t>(tag.u32(at + 4 * static_cast<uint32_t>(i)));
    };
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            const int32_t v = fixed(3 * row + column);
            s.matrix[row][column] = static_cast<float>(v) / 65536.0f;
            if (v != (row == column ? kFixedOne : 0)) s.matrixUsed = true;
        }
        const int32_t offset = withOffsets ? fixed(9 + row) : 0;
        s.matrix[row][3] = static_cast<float>(offset);
        if (offset != 0) s.matrixUsed = true;
    }
}

float fullScaleReciprocal(int bits) {
    return 1.0f / static_cast<float>((1 << bits) - 1);
}

/// From a value before the grid to 0..1.
float inputScale(const icLutState_t& s) {
    return fullScaleReciprocal(s.kind == kTypeLut8 ? 8 : 16);
}

void setGrid(icLutState_t& s, int dimension, uint32_t points) {
    s.positionScale[dimension] = static_cast<float>(points - 1) * inputScale(s);
    s.lastCell[dimension] = static_cast<int32_t>(points) - 2;
}

void readLut8(const TagView& tag, icLutState_t& s) {
    const uint32_t grid = tag.u8(kGrid);
    readMatrix(tag, kMatrix, false, s);
    s.matrixFirst = true;
    s.clutBits = 8;
    s.inputEntries = s.outputEntries = kLut8Entries;
    std::fill_n(s.gridPoints, 3, grid);
    const uint8_t* tables = tag.bytes + kLut8Tables;
    s.inputTables8 = {tables, kLut8Entries};
    s.clut8 = tables + kLut8Entries * tag.inputs();
    s.outputTables8 = {s.clut8 + clutEntries(tag.inputs(), grid, tag.outputs()), kLut8Entries};
}

void readLut16(const TagView& tag, icLutState_t& s) {
    const uint32_t grid = tag.u8(kGrid);
    readMatrix(tag, kMatrix, false, s);
    s.matrixFirst = true;
    s.clutBits = 16;
    s.middleEntries = static_cast<int32_t>(tag.u16(kInputEntries));
    s.outputEntries = static_cast<int32_t>(tag.u16(kOutputEntries));
    std::fill_n(s.gridPoints, tag.inputs(), grid);
    const uint16_t* tables = words(tag.bytes + kLut16Tables);
    s.middleCurves = {tables, s.middleEntries};
    s.clut16 = tables + size_t{tag.u16(kInputEntries)} * tag.inputs();
    s.outputCurves = {s.clut16 + clutEntries(tag.inputs(), grid, tag.outputs()), s.outputEntries};
}

void readClutAB(const TagView& tag, uint32_t at, icLutState_t& s, LutStorage& storage) {
    for (uint32_t i = 0; i < tag.inputs(); ++i)
        s.gridPoints[i] = tag.u8(at + i);
    const uint8_t* data = tag.bytes + at + kClutData;
    if (tag.u8(at + kClutPrecision) == 1) {
        s.clutBits = 8;
        s.clut8 = data;
        return;
    }
    s.clutBits = 16;
    if (reinterpret_cast<uintptr_t>(data) % alignof(uint16_t) == 0) {
        s.clut16 = words(data);
        return;
    }
    const auto gridOf = [&](uint32_t i) { return s.gridPoints[i]; };
    storage.clut.resize(static_cast<size_t>(boundedProduct(tag.inputs(), gridOf, tag.outputs())));
    std::memcpy(storage.clut.data(), data, storage.clut.size() * sizeof(uint16_t));
    s.clut16 = storage.clut.data();
}

using CurveTables = std::vector<std::vector<uint16_t>>;

std::vector<uint16_t> sampledCurve(const TagView& tag, uint32_t at) {
    std::vector<uint16_t> table(kCurveSamples);
    if (tag.u32(at) == kTypeCurve) {
        icResampleCurv(tag.bytes + at, kCurveSamples, table.data());
    } else {
        icSampleParaCurve(tag.bytes + at, kCurveSamples, table.data());
    }
    return table;
}

CurveTables sampledCurves(const TagView& tag, LutElement set) {
    CurveTables tables;
    uint32_t at = tag.offset(set);
    if (at == 0) return tables;
    for (uint32_t i = 0; i < tag.curves(set); ++i, at = tag.nextCurve(at)) {
        tables.push_back(sampledCurve(tag, at));
    }
    return tables;
}

/// A set of 'curv' elements that all have the same two or more entries, as it stands; else nothing.
CurveTables equallySampledCurves(const TagView& tag, LutElement set) {
    CurveTables tables;
    uint32_t at = tag.offset(set);
    const uint32_t entries = tag.u32(at + kCurveCount);
    for (uint32_t i = 0; i < tag.curves(set); ++i, at = tag.nextCurve(at)) {
        const bool alike =
            tag.u32(at) == kTypeCurve && entries >= 2 && tag.u32(at + kCurveCount) == entries;
        if (!alike) return {};
        std::vector<uint16_t>& table = tables.emplace_back(entries);
        std::memcpy(table.data(), tag.bytes + at + kCurveData, entries * sizeof(uint16_t));
    }
    return tables;
}

/// Input curves of a tag that takes Lab in the 0..65535 encoding of L*, stretched to take 0..65280.
/// A set that is sampled alike keeps its own entries, so that its nodes stay nodes.
CurveTables labInputCurves(const TagView& tag) {
    if (tag.offset(kBCurves) == 0) return {};
    CurveTables tables = equallySampledCurves(tag, kBCurves);
    if (tables.empty()) tables = sampledCurves(tag, kBCurves);
    for (auto& table : tables)
        icLabCurveToLegacy(table);
    return tables;
}

/// Output curves of a tag that makes Lab in the 0..65535 encoding of L*, scaled to 0..65280.
CurveTables labOutputCurves(const TagView& tag) {
    CurveTables tables = sampledCurves(tag, kBCurves);
    tables.resize(tag.outputs());
    for (auto& table : tables)
        icLabCurveFromLegacy(table);
    return tables;
}

/// Puts a set's tables one after the other into `block`.
TableSet<uint16_t> packed(const CurveTables& tables, std::vector<uint16_t>& block) {
    if (tables.empty()) return {};
    block.reserve(tables.size() * tables[0].size());
    for (const auto& table : tables)
        block.insert(block.end(), table.begin(), table.end());
    return {block.data(), static_cast<int32_t>(tables[0].size())};
}

void readLutAB(const TagView& tag, icLutState_t& s, LutStorage& storage) {
    const bool toDevice = s.kind == kTypeLutBToA;
    s.matrixFirst = toDevice;
    if (const uint32_t matrix = tag.offset(kMatrixElement)) readMatrix(tag, matrix, true, s);
    if (const uint32_t clut = tag.offset(kClutElement)) readClutAB(tag, clut, s, storage);

    const LutElement inputSet = toDevice ? kBCurves : kACurves;
    const LutElement outputSet = toDevice ? kACurves : kBCurves;
    const bool labInput = toDevice && s.inSpace == kSpaceLab;
    const bool labOutput = !toDevice && s.outSpace == kSpaceLab;
    s.inputCurves =
        packed(labInput ? labInputCurves(tag) : sampledCurves(tag, inputSet), storage.inputCurves);
    s.middleCurves = packed(sampledCurves(tag, kMCurves), storage.middleCurves);
    s.outputCurves = packed(labOutput ? labOutputCurves(tag) : sampledCurves(tag, outputSet),
                            storage.outputCurves);
    s.inputEntries = s.inputCurves.entries;
    s.middleEntries = s.middleCurves.entries;
    s.outputEntries = s.outputCurves.entries;
}

/// Strides and corner offsets. A lut8 tag has one grid count for all its dimensions, whatever
/// gridPoints records.
void setStrides(const TagView& tag, icLutState_t& s, LutStorage& storage) {
    const int n = s.inChannels;
    const auto points = [&](int i) {
        return s.kind == kTypeLut8 ? tag.u8(kGrid) : s.gridPoints[i];
    };
    uint32_t stride = static_cast<uint32_t>(s.outChannels);
    for (int i = n - 1; i >= 0; --i) {
        s.strides[i] = stride;
        stride *= points(i);
        setGrid(s, i, points(i));
    }
    s.cornerCount = uint32_t{1} << n;
    storage.cornerOffsets.resize(s.cornerCount);
    for (uint32_t corner = 1; corner < s.cornerCount; ++corner) {
        int bit = 0;
        while ((corner >> bit & 1) == 0)
            ++bit;
        storage.cornerOffsets[corner] =
            storage.cornerOffsets[corner & (corner - 1)] + s.strides[n - 1 - bit];
    }
    s.cornerOffsets = storage.cornerOffsets.data();
}

}  // namespace

void icBuildLutState(const icTagBase* base, uint32_t inSpace, uint32_t outSpace, icLutState_t& s) {
    const TagView tag{reinterpret_cast<const uint8_t*>(base), false};
    auto storage = std::make_shared<LutStorage>();
    s.kind = tag.type();
    s.inSpace = inSpace;
    s.outSpace = outSpace;
    s.inChannels = static_cast<int32_t>(tag.inputs());
    s.outChannels = static_cast<int32_t>(tag.outputs());
    switch (s.kind) {
        case kTypeLut8:
            readLut8(tag, s);
            break;
        case kTypeLut16:
            readLut16(tag, s);
            break;
        default:
            readLutAB(tag, s, *storage);
            break;
    }
    s.hasClut = s.clut8 != nullptr || s.clut16 != nullptr;
    s.hasInputCurves = bool{s.inputTables8} || bool{s.inputCurves};
    s.hasMiddleCurves = bool{s.inputTables8} || bool{s.middleCurves};
    s.hasOutputCurves = bool{s.outputTables8} || bool{s.outputCurves};
    // Without a grid the values keep the input's precision up to the output tables.
    const float clutScale = s.hasClut ? fullScaleReciprocal(s.clutBits) : inputScale(s);
    s.outputTableScale = static_cast<float>(s.outputEntries - 1) * clutScale;
    if (s.hasClut) setStrides(tag, s, *storage);
    s.storage = std::move(storage);
}

}  // namespace lumoxa
