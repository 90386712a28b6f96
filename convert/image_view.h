// SPDX-License-Identifier: Apache-2.0
//
// Pixels in memory, as a conversion takes them, and what has to hold before one of them is touched.
#pragma once

#include <cstdint>

#include "convert/plan.h"

namespace lumoxa::engine {

/// Most channels of a view, colours and extra ones.
inline constexpr int kMaxViewChannels = 32;

/// Most pixels a side.
inline constexpr int64_t kMaxViewSide = int64_t{1} << 31;

/// A picture of any layout: interleaved, planar, bottom-up, mirrored, cropped; samples of any
/// alignment. Strides are in bytes and of any sign; that of a dimension of size 1 is not read.
struct PixelView {
    void* data = nullptr;  ///< first sample of the first pixel of the first row
    SampleType sample = SampleType::kU8;
    int64_t width = 0, height = 0;
    int channels = 0;  ///< colours, then what is copied (alpha)
    int64_t channelStride = 0, pixelStride = 0, rowStride = 0;
};

/// How two views that fit a conversion fit each other.
struct ViewMatch {
    int extras;    ///< channels behind the colours, on both sides
    bool inPlace;  ///< the same pixels of the same memory; disjoint otherwise
};

/// Checks what a conversion from `inputs` to `outputs` channels is to be run on. Reads no pixel.
///
/// @throws FaultError with icErrInvalid for unknown sample types, sizes, channel counts and
///         strides that don't fit and for memory that is partly shared; icErrNullData for a view
///         with pixels that has no data
ViewMatch checkViews(int inputs, int outputs, const PixelView& source,
                     const PixelView& destination);

}  // namespace lumoxa::engine
