// SPDX-License-Identifier: Apache-2.0
//
// The evaluation state of a LUT transform: a LUT tag of any of the four types brought into one
// shape. Stages are, in order: input curves, matrix, middle curves, grid (CLUT), output curves; a
// tag has some of them. 'mft2' input tables count as middle curves, because they follow the matrix.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "lut/lut_tag.h"
#include "lut/row_kernels.h"

namespace lumoxa {

/// Equally long tables that stand one after the other.
template <class Entry>
struct TableSet {
    const Entry* first = nullptr;
    int32_t entries = 0;

    const Entry* table(int channel) const {
        return first + static_cast<size_t>(channel) * static_cast<size_t>(entries);
    }
    int32_t lastSegment() const { return entries - 2; }
    explicit operator bool() const { return first != nullptr; }
};

/// What a LUT state had to copy out of its tag. Immutable once built and shared by copies of the
/// state, so that a copy with one stage switched off is cheap and safe.
struct LutStorage {
    std::vector<uint16_t> inputCurves;
    std::vector<uint16_t> middleCurves;
    std::vector<uint16_t> outputCurves;
    std::vector<uint16_t> clut;  // a 16-bit grid that stands at an odd address in its tag
    std::vector<uint32_t> cornerOffsets;
};

/// Invariants: immutable after building; the tag outlives the state; table sets that are present
/// have at least 2 entries and grids at least 2 points a dimension.
struct icLutState_t {
    uint32_t kind = 0;  // the tag's type
    uint32_t inSpace = 0;
    uint32_t outSpace = 0;

    int32_t clutBits = 0;  // precision of the grid's entries; 0 without a grid
    // Maps a value after the grid to a position in an output table.
    float outputTableScale = 0;
    // Of a lut8 tag only the first three dimensions have their grid points recorded, which describe
    // the tag. Evaluation goes by positionScale and lastCell.
    uint32_t gridPoints[kMaxInputs] = {};
    float positionScale[kMaxInputs] = {};  // from an input value to a grid coordinate
    int32_t lastCell[kMaxInputs] = {};     // grid points - 2, every dimension

    int32_t inputEntries = 0;
    int32_t middleEntries = 0;
    int32_t outputEntries = 0;
    int32_t inChannels = 0;
    int32_t outChannels = 0;
    uint32_t cornerCount = 0;  // 2^inChannels

    bool matrixFirst = false;  // the matrix stands before the grid
    bool matrixUsed = false;   // the matrix is not the identity
    bool hasInputCurves = false;
    bool hasMiddleCurves = false;
    bool hasClut = false;
    bool hasOutputCurves = false;

    // Rows of three factors and an offset. The offsets of 'mAB ' and 'mBA ' tags are their
    // s15Fixed16 integers as they stand, without the division by 65536, so that an offset
    // of 1.0 adds the whole range.
    float matrix[3][4] = {};

    uint32_t strides[kMaxInputs] = {};  // in grid entries; the last dimension's is outChannels
    const uint32_t* cornerOffsets = nullptr;  // bit j of the corner goes with dimension nIn - 1 - j

    TableSet<uint8_t> inputTables8;
    TableSet<uint8_t> outputTables8;
    const uint8_t* clut8 = nullptr;
    TableSet<uint16_t> inputCurves;  // 'mAB ' and 'mBA ' only
    TableSet<uint16_t> middleCurves;
    TableSet<uint16_t> outputCurves;
    const uint16_t* clut16 = nullptr;

    std::shared_ptr<const LutStorage> storage;

    /// Whether the middle curves take part in evaluation. The matrix and the middle curves of 'mAB
    /// ' tags, which follow the grid, do not; nor do those of a tag without output curves.
    bool appliesMiddleCurves() const {
        return matrixFirst && hasMiddleCurves && (outputEntries != 0 || hasOutputCurves);
    }
    /// The matrix serves three-channel tags only.
    bool appliesMatrix() const { return matrixFirst && matrixUsed && inChannels == 3; }
};

/// Fills `state` from a checked tag in host byte order. Throws std::bad_alloc.
void icBuildLutState(const icTagBase* tag, uint32_t inSpace, uint32_t outSpace,
                     icLutState_t& state);

}  // namespace lumoxa
