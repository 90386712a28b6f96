// SPDX-License-Identifier: Apache-2.0
//
// Kernels between a line of a picture, whatever its layout, and packed pixels: colours gathered and
// scattered, extra channels copied, colours divided by alpha and multiplied with it.
//
// A kernel is chosen once a run by sample types. Samples of pictures may have any alignment; packed
// ones are aligned. Nothing is written outside the samples named.
#pragma once

#include <cstddef>
#include <cstdint>

#include "convert/plan.h"

namespace lumoxa::engine {

/// Pixels that follow each other in a line: the first sample of the first, and the strides in
/// bytes.
struct LinePart {
    uint8_t* first;
    ptrdiff_t channelStride;
    ptrdiff_t pixelStride;

    uint8_t* at(ptrdiff_t pixel, ptrdiff_t channel) const {
        return first + pixel * pixelStride + channel * channelStride;
    }
    LinePart channelsFrom(ptrdiff_t channel) const {
        return {at(0, channel), channelStride, pixelStride};
    }
};

/// Copies colours to packed pixels, or packed pixels to colours, as they are.
using GatherFn = void (*)(LinePart from, int channels, ptrdiff_t pixels, void* packed);
using ScatterFn = void (*)(const void* packed, LinePart to, int channels, ptrdiff_t pixels);
GatherFn gatherKernel(SampleType type);
ScatterFn scatterKernel(SampleType type);

/// Copies extra channels from picture to picture in the sample type of the latter: 8 bits widen to
/// 16 by 257, 0..255 and 0..65535 are 0..1 of floating point, which is clipped (NaN to 0). Rounds
/// to the nearest; floating point to floating point stays as it is, bit by bit.
using CopyExtrasFn = void (*)(LinePart from, LinePart to, int channels, ptrdiff_t pixels);
CopyExtrasFn copyExtrasKernel(SampleType from, SampleType to);

/// Packed samples between the steps of a premultiplied run: 16 bits for integers, so that a
/// division by alpha loses nothing, floating point for floating point. Both keep the encoding that
/// the conversion has for that kind of samples.
constexpr SampleType straightType(SampleType type) {
    return type == SampleType::kF32 ? SampleType::kF32 : SampleType::kU16;
}

/// Divides colours by alpha, the channel behind them, into packed pixels of straightType(type), and
/// keeps alpha as one such sample a pixel. Colours are 0 where alpha is; integers above alpha
/// become the maximum. At full alpha the result is exactly the sample, widened.
using UnpremultiplyFn = void (*)(LinePart from, int channels, ptrdiff_t pixels, void* packed,
                                 void* alpha);
UnpremultiplyFn unpremultiplyKernel(SampleType from);

/// Multiplies packed pixels of straightType(to) with the alpha that unpremultiplyKernel(from) kept,
/// and rounds to the nearest sample of the picture. For integers, alpha counts as at most 1. At
/// full alpha the result is exactly the sample, rounded to 8 bits where the picture has 8.
using PremultiplyFn = void (*)(const void* packed, const void* alpha, LinePart to, int channels,
                               ptrdiff_t pixels);
PremultiplyFn premultiplyKernel(SampleType from, SampleType to);

}  // namespace lumoxa::engine
