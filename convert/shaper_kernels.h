// SPDX-License-Identifier: Apache-2.0
//
// The inner loops of shapers, in the form that suits the processor. All forms give the same bytes.
#pragma once

#include <cstdint>

#include "lut/row_kernels.h"

namespace lumoxa::engine {

/// What 8-bit samples contribute to a matrix's results: for each channel and level four floats, of
/// which the last is idle, and the offsets.
struct ColumnSums {
    static constexpr int kLevels = 256;
    const float* products;
    float offsets[kOutputGroup];
};

/// How values become bytes (octave_bytes.h), lane by lane: the lanes are the channels of two
/// pixels.
struct ByteSteps {
    const uint32_t* steps;
    float least[kLanes];
    uint32_t restBits[kLanes];
    uint32_t restMask[kLanes];
    uint32_t toStep[kLanes];  ///< added to a value's upper bits
};

/// A 3 x 3 matrix and offsets, row after row.
struct MatrixRows {
    float factors[3][3];
    float offsets[3];
};

struct ShaperKernels {
    /// Adds up what one or three samples a pixel contribute, from the first channel to the last,
    /// and the offsets: four floats a pixel, for whole pairs of pixels.
    void (*sumColumns)(const ColumnSums& sums, const uint8_t* source, int channels, int pixels,
                       float* groups);
    /// Four floats a pixel to one or three bytes; reads whole pairs of pixels.
    void (*storeBytes)(const ByteSteps& steps, const float* groups, int channels, int pixels,
                       uint8_t* destination);
    /// Divides every value by 65535.
    void (*toUnit)(float* row, int pixels);
    /// OctaveTable::run() of a row.
    void (*lookUpOctaves)(const float* values, float* row, int pixels);
    /// In place; sums from the first column to the last, then the offset.
    void (*applyMatrix)(const MatrixRows& matrix, Row* rows, int pixels);
    /// Rows of 0 .. 1 to packed samples, rounded; what lies beyond is clipped.
    void (*storeWords)(const Row* rows, int channels, int pixels, uint16_t* destination);
};

/// The kernels for this processor (usesAvx2()).
const ShaperKernels& shaperKernels();

/// The table that lookUpOctaves() reads: IEEE single precision has eight bits of exponent and 23 of
/// fraction, of which the upper eight choose the step.
inline constexpr int kOctaveRestBits = 15;
inline constexpr uint32_t kOctaveFirstStep = (127U - 40U) << 8;

}  // namespace lumoxa::engine
