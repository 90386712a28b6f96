// SPDX-License-Identifier: Apache-2.0
//
// From two views to runs of packed pixels for a plan: which side the plan reads or writes in place,
// which goes through a buffer, and the way of a chunk of pixels from one view to the other.
#pragma once

#include <cstddef>
#include <cstdint>

#include "convert/image_view.h"
#include "convert/line_kernels.h"
#include "convert/plan.h"

namespace lumoxa::engine {

/// One view as lines. Immutable.
struct Lines {
    uint8_t* data;
    int64_t channelStride, pixelStride, rowStride;

    LinePart at(int64_t row, int64_t pixel) const {
        return {data + (row * rowStride + pixel * pixelStride), channelStride, pixelStride};
    }
};

/// Converts pixels of one view into those of another. Immutable: threads use one at once, each with
/// a buffer of its own. The plan and the views' pixels have to outlive it.
class ChunkConverter {
  public:
    /// The views have passed checkViews with `match` as answer.
    ChunkConverter(const Plan& plan, const PixelView& source, const PixelView& destination,
                   const ViewMatch& match, bool premultiplied);

    /// Size of the buffer that convert() works with; 0 where both sides are packed.
    size_t bufferBytes() const { return outBytes_ + inBytes_ + alphaBytes_; }

    /// Converts `count` pixels from pixel `first` of the views, in raster order. `buffer` has
    /// bufferBytes() bytes and the alignment of `new`.
    void convert(int64_t first, int64_t count, std::byte* buffer) const;

  private:
    void mergeLines();
    void chooseSides();
    void sizeBuffers();
    int64_t chunkAt(int64_t first, int64_t left) const;
    void convertChunk(int64_t first, int64_t pixels, std::byte* buffer) const;
    void read(int64_t first, int64_t pixels, std::byte* packed, std::byte* alpha) const;
    void write(int64_t first, int64_t pixels, const std::byte* packed,
               const std::byte* alpha) const;
    template <class Work>
    void forEachPart(int64_t first, int64_t pixels, Work work) const;

    const Plan& plan_;
    Lines source_;
    Lines destination_;
    int64_t width_;
    int64_t height_;
    int extras_;  // to be copied or, if premultiplied, taken into account
    bool premultiplied_;
    bool copiesExtras_;
    SampleType in_;  // of the packed pixels that the plan takes and gives
    SampleType out_;
    bool readsInPlace_ = false;
    bool writesInPlace_ = false;
    bool endsAtLines_ = false;  // a side is packed within its lines only
    size_t inBytes_ = 0;        // of the parts of the buffer
    size_t outBytes_ = 0;
    size_t alphaBytes_ = 0;

    GatherFn gather_;
    ScatterFn scatter_;
    CopyExtrasFn copyExtras_;
    UnpremultiplyFn unpremultiply_;
    PremultiplyFn premultiply_;
};

}  // namespace lumoxa::engine
