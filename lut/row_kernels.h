// SPDX-License-Identifier: Apache-2.0
//
// The inner loops of LUT evaluation, over rows of a block: in the form that suits the processor.
// All forms give the same bytes.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumoxa {

/// Pixels that pass through the stages together: few enough that all rows stay in the first-level
/// cache.
inline constexpr int kBlockPixels = 64;

using Row = float[kBlockPixels];

/// Outputs that simplex interpolation works out together.
inline constexpr int kOutputGroup = 4;

/// The outputs of one group, pixel after pixel.
using Groups = float[kBlockPixels * kOutputGroup];

/// Rows and groups hold numbers up to the next multiple of this behind the last pixel.
inline constexpr int kLanes = 8;

/// What follows the grid for up to four outputs: a scale, curves where there are any, and samples.
struct GroupFinish {
    float scale;
    const uint16_t* curves;  ///< of equal length, one after the other; null for none
    int32_t entries;
    float sampleScale;
    int outputs;  ///< 1 .. 4
};

struct RowKernels {
    /// Packed pixels to rows: each sample times `scale`.
    void (*spreadBytes)(const uint8_t* samples, int channels, int pixels, float scale, Row* rows);
    void (*spreadWords)(const uint16_t* samples, int channels, int pixels, float scale, Row* rows);

    /// lookUp() (table_lookup.h) of every value in place. Any count.
    void (*lookUp)(const uint16_t* table, int32_t lastSegment, float* row, int count);

    /// Adds the cells along one dimension, times their stride, to `cell`; fractions to `fraction`.
    void (*locate)(const float* row, int pixels, float scale, int32_t lastCell, uint32_t stride,
                   uint32_t* cell, float* fraction);

    /// Interpolates one group of outputs by tetrahedra, or pentahedra. Nodes are numbers below
    /// 2^16; cells and strides count them. Cells hold places of the grid behind the last pixel,
    /// too.
    void (*tetrahedra)(const uint16_t* nodes, const uint32_t* strides, const uint32_t* cell,
                       const Row* fraction, int pixels, float* groups);
    void (*pentahedra)(const uint16_t* nodes, const uint32_t* strides, const uint32_t* cell,
                       const Row* fraction, int pixels, float* groups);

    /// The same by all eight corners of a cell, weighted: trilinear interpolation.
    void (*cubes)(const uint16_t* nodes, const uint32_t* strides, const uint32_t* cell,
                  const Row* fraction, int pixels, float* groups);

    /// Groups to packed samples, rounded; what doesn't fit wraps, as roundWrapped() has it.
    void (*finishBytes)(const GroupFinish& finish, const float* groups, int pixels,
                        uint8_t* destination);
    void (*finishWords)(const GroupFinish& finish, const float* groups, int pixels,
                        uint16_t* destination);
};

/// The kernels for this processor (usesAvx2()).
const RowKernels& rowKernels();

}  // namespace lumoxa
