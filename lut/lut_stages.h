// SPDX-License-Identifier: Apache-2.0
//
// Stages of LUT evaluation around the grid, shared by the plain, tetrahedral and pentahedral
// kernels, and the kernel that strings them together.
//
// A kernel runs block by block, stage by stage: a block's samples lie channel by channel in float
// rows, so each stage is a loop over pixels without choices in it. What depends on the state or on
// the two sample widths is settled when a stage object is made, once per call.
//
// All arithmetic is single precision, in the order written; nothing is rounded between stages.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/pcs_encoding.h"
#include "lut/curve_mask.h"
#include "lut/lut_state.h"
#include "lut/row_kernels.h"
#include "lut/table_lookup.h"
#include "profile/signatures.h"

namespace lumoxa {

/// Rows that a grid may fill: every output's, and those that make the last group of outputs whole.
inline constexpr int kOutputRows = (kMaxOutputs + kOutputGroup - 1) / kOutputGroup * kOutputGroup;

/// 'mft1': values keep the tag's 8-bit range, 0..255, between the input and the output tables.
struct Lut8Family {
    using Entry = uint8_t;
    static constexpr float kTop = 255.0f;
};

/// 'mft2', 'mAB ' and 'mBA ': values run over 0..65535.
struct Lut16Family {
    using Entry = uint16_t;
    static constexpr float kTop = 65535.0f;
};

namespace lut_scale {

/// 8-bit samples of connection-space data are the high bytes of 16-bit ones; those of device data
/// repeat their byte. So 0xFF is 0xFF00 or 0xFFFF.
inline float to16(uint32_t space) {
    return isConnectionSpace(space) ? 256.0f : 257.0f;
}
inline float to8(uint32_t space) {
    return isConnectionSpace(space) ? 0.00390625f : 0.0038910506f;
}

/// From a sample to a position in a table of `entries` entries that reads it.
template <class Family, class Sample>
float toPosition(int32_t entries, uint32_t space) {
    const auto last = static_cast<float>(entries - 1);
    const bool pcs = isConnectionSpace(space);
    if constexpr (sizeof(Sample) == 2) {
        const bool highByteOnly = pcs && sizeof(typename Family::Entry) == 1;
        return last / (highByteOnly ? float{kLabLMax} : kSampleMax16);
    } else {
        const bool asHighByte = pcs && sizeof(typename Family::Entry) == 2;
        return asHighByte ? 256.0f * last / 65535.0f : last / 255.0f;
    }
}

/// From a sample that no table reads to the family's range.
template <class Family, class Sample>
float toFamilyRange(uint32_t space) {
    if constexpr (sizeof(Sample) == sizeof(typename Family::Entry)) return 1.0f;
    if constexpr (sizeof(Sample) == 2) return 255.0f / 65535.0f;
    return to16(space);
}

}  // namespace lut_scale

/// Input curves, matrix and middle curves: packed samples to rows in the family's range.
template <class Family, class Sample>
class InputStage {
  public:
    /// `clipsMiddle`: positions in the middle tables end at the last entry instead of extending the
    /// last segment. Only matrix results of 8-bit samples can lie beyond it.
    /// `withCurves`: whether the tag's input tables take part. Those of lut16 are middle curves.
    InputStage(const icLutState_t& s, bool clipsMiddle, bool withCurves = true)
        : state_(s), channels_(s.inChannels) {
        if (withCurves) curves_ = inputTables(s);
        const bool middle = s.appliesMiddleCurves() && sizeof(typename Family::Entry) == 2 &&
                            (withCurves || s.kind != kTypeLut16);
        middle_ = middle ? s.middleCurves : TableSet<uint16_t>{};
        if (curves_) {
            scale_ = lut_scale::toPosition<Family, Sample>(curves_.entries, s.inSpace);
        } else if (s.kind != kTypeLut16 || !middle) {
            scale_ = lut_scale::toFamilyRange<Family, Sample>(s.inSpace);
        }
        // lut16 samples reach the matrix and the middle tables as they are, 0..255 or 0..65535.
        middleScale_ = s.kind == kTypeLut16
                           ? lut_scale::toPosition<Family, Sample>(middle_.entries, s.inSpace)
                           : lut_scale::toPosition<Family, uint16_t>(middle_.entries, kSpaceRgb);
        middleLimit_ = clipsMiddle ? static_cast<float>(middle_.entries - 1)
                                   : std::numeric_limits<float>::max();
    }

    void run(const Sample* source, int pixels, Row* x) const {
        spread(source, pixels, x);
        for (int c = 0; c < channels_; ++c) {
            if (curves_) apply(curves_, c, pixels, x[c]);
        }
        if (state_.appliesMatrix()) applyMatrix(pixels, x);
        if (!middle_) return;
        for (int c = 0; c < channels_; ++c) {
            for (int i = 0; i < pixels; ++i)
                x[c][i] = std::min(x[c][i] * middleScale_, middleLimit_);
            apply(middle_, c, pixels, x[c]);
        }
    }

  private:
    using Entry = typename Family::Entry;

    static TableSet<Entry> inputTables(const icLutState_t& s) {
        if (!s.hasInputCurves) return {};
        if constexpr (sizeof(Entry) == 1) {
            return s.inputTables8;
        } else {
            return s.inputCurves;
        }
    }

    void spread(const Sample* source, int pixels, Row* x) const {
        if constexpr (sizeof(Sample) == 1) {
            rowKernels().spreadBytes(source, channels_, pixels, scale_, x);
        } else {
            rowKernels().spreadWords(source, channels_, pixels, scale_, x);
        }
    }

    template <class TableEntry>
    static void apply(const TableSet<TableEntry>& set, int channel, int pixels, float* row) {
        lookUpRow(set.table(channel), set.lastSegment(), row, pixels);
    }

    void applyMatrix(int pixels, Row* x) const {
        const auto& m = state_.matrix;
        for (int i = 0; i < pixels; ++i) {
            const float x0 = x[0][i];
            const float x1 = x[1][i];
            const float x2 = x[2][i];
            for (int r = 0; r < 3; ++r) {
                x[r][i] =
                    clipped(m[r][0] * x0 + m[r][1] * x1 + m[r][2] * x2 + m[r][3], Family::kTop);
            }
        }
    }

    const icLutState_t& state_;
    int channels_;
    TableSet<Entry> curves_;
    TableSet<uint16_t> middle_;
    float scale_ = 1.0f;
    float middleScale_ = 1.0f;
    float middleLimit_ = 0.0f;
};

/// Output curves: rows after the grid to packed samples.
template <class Family, class Sample>
class OutputStage {
  public:
    explicit OutputStage(const icLutState_t& s, bool withCurves = true) : channels_(s.outChannels) {
        if (withCurves) curves_ = outputTables(s);
        if (curves_) scale_ = s.outputTableScale;
        if constexpr (sizeof(Entry) == 2) {
            // An 8-bit grid whose values no table reads is spread over 16 bits.
            if (!curves_ && s.clutBits == 8) scale_ = 257.0f;
            if constexpr (sizeof(Sample) == 1) sampleScale_ = lut_scale::to8(s.outSpace);
        } else if constexpr (sizeof(Sample) == 2) {
            // A value that no table has turned into a sample is a position in the full range.
            sampleScale_ = curves_ ? lut_scale::to16(s.outSpace) : 257.0f;
        }
    }

    void run(Row* values, int pixels, Sample* destination) const {
        for (int c = 0; c < channels_; ++c) {
            float* row = values[c];
            for (int i = 0; i < pixels; ++i)
                row[i] *= scale_;
            if (curves_) lookUpRow(curves_.table(c), curves_.lastSegment(), row, pixels);
            for (int i = 0; i < pixels; ++i) {
                destination[static_cast<ptrdiff_t>(i) * channels_ + c] = sample(row[i]);
            }
        }
    }

    /// The same for up to four outputs as simplex interpolation leaves them.
    void run(const float* groups, int pixels, Sample* destination) const {
        static_assert(sizeof(Entry) == 2);
        const GroupFinish finish = {scale_, curves_.first, curves_.entries, sampleScale_,
                                    channels_};
        if constexpr (sizeof(Sample) == 1) {
            rowKernels().finishBytes(finish, groups, pixels, destination);
        } else {
            rowKernels().finishWords(finish, groups, pixels, destination);
        }
    }

  private:
    using Entry = typename Family::Entry;

    static TableSet<Entry> outputTables(const icLutState_t& s) {
        if (!s.hasOutputCurves) return {};
        if constexpr (sizeof(Entry) == 1) {
            return s.outputTables8;
        } else {
            return s.outputCurves;
        }
    }

    /// Only lut8 values that grow to 16 bits are clipped. An 8-bit sample of a connection space
    /// made from 65408 or more wraps to 0; the full scale of such data, 0xFF00, lies below that.
    Sample sample(float v) const {
        const float scaled = v * sampleScale_;
        if constexpr (sizeof(Entry) == 1 && sizeof(Sample) == 2) {
            return roundClipped<Sample>(scaled);
        } else {
            return roundWrapped<Sample>(scaled);
        }
    }

    int channels_;
    TableSet<Entry> curves_;
    float scale_ = 1.0f;
    float sampleScale_ = 1.0f;
};

/// What a tag without a grid does in its place: channels pass, missing ones are 0.
inline void passWithoutClut(const icLutState_t& s, const Row* x, int pixels, Row* values) {
    for (int c = 0; c < s.outChannels; ++c) {
        if (c < s.inChannels) {
            std::copy_n(x[c], pixels, values[c]);
        } else {
            std::fill_n(values[c], pixels, 0.0f);
        }
    }
}

/// Rows at grid coordinates taken apart: the cell of each pixel, counted with `strides`, and the
/// fraction along each dimension.
inline void locateCells(const icLutState_t& s, const uint32_t* strides, const Row* x, int pixels,
                        uint32_t* cell, Row* fraction) {
    std::fill_n(cell, kBlockPixels, 0U);
    for (int d = 0; d < s.inChannels; ++d) {
        rowKernels().locate(x[d], pixels, s.positionScale[d], s.lastCell[d], strides[d], cell,
                            fraction[d]);
    }
}

/// Converts a run of packed pixels. `Clut`, made from its `Clut::State`, interpolates the grid for
/// a block of rows. Source and destination may be the same memory where their pixels have one
/// size: a block is read whole before any of it is written.
template <class Family, class Clut, class In, class Out>
void convertLut(const typename Clut::State& state, const In* source, Out* destination,
                ptrdiff_t pixels, CurveMask curves = {}) {
    const InputStage<Family, In> input(state, Clut::kClipsMiddle, curves.input);
    const Clut clut(state);
    const OutputStage<Family, Out> output(state, curves.output);
    Row x[kMaxInputs] = {};
    Row values[kOutputRows];
    constexpr bool kInGroups = Clut::kInGroups && sizeof(typename Family::Entry) == 2;
    const bool inOneGroup = state.hasClut && state.outChannels <= kOutputGroup;
    for (ptrdiff_t done = 0; done < pixels; done += kBlockPixels) {
        const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, pixels - done));
        input.run(source + done * state.inChannels, n, x);
        if constexpr (kInGroups) {
            if (inOneGroup) {
                Groups groups;
                clut.runOneGroup(x, n, groups);
                output.run(groups, n, destination + done * state.outChannels);
                continue;
            }
        }
        if (state.hasClut) {
            clut.run(x, n, values);
        } else {
            passWithoutClut(state, x, n, values);
        }
        output.run(values, n, destination + done * state.outChannels);
    }
}

}  // namespace lumoxa
