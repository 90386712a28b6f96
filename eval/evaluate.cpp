// SPDX-License-Identifier: Apache-2.0
//
// The evaluation driver: walks the lines of two layouts, makes each line look packed to the kernel
// and reports progress.
#include "lumoxa/evaluate.h"

#include <algorithm>
#include <limits>

#include "base/c_heap.h"
#include "base/entry_guard.h"
#include "eval/kernel_table.h"
#include "eval/line_copy.h"

namespace lumoxa {
namespace {

bool isSampleType(int32_t dataType) {
    return dataType == icSamples8 || dataType == icSamples16;
}

Depth depthOf(const icPixelLayout_t& layout) {
    return layout.dataType == icSamples8 ? Depth::k8 : Depth::k16;
}

int64_t sampleSize(const icPixelLayout_t& layout) {
    return layout.dataType == icSamples8 ? 1 : 2;
}

/// Whether all lines of a side can be addressed: channels are there, and no line's offset, a signed
/// 32-bit product, wraps. A packed side is touched as far as the source's counts say, a strided one
/// by its own pixel count.
bool addressable(const icPixelLayout_t& layout, const icPixelLayout_t& source) {
    const bool packed = layout.contiguous != 0;
    const int32_t channels = packed ? 1 : layout.channelCount;
    if (channels < 1 || channels > kMaxLayoutChannels) return false;
    const int32_t pixels = packed ? source.pixelCount : layout.pixelCount;
    if (source.lineCount < 1 || pixels < 1) return true;
    const int64_t farthest = int64_t{layout.lineStep} * (source.lineCount - 1);
    if (farthest != static_cast<int32_t>(farthest)) return false;
    return std::none_of(layout.channelData, layout.channelData + channels,
                        [](const void* data) { return data == nullptr; });
}

/// One side of a conversion: where the kernel finds its lines. The source's counts rule both sides.
class Side {
  public:
    Side(const icPixelLayout_t& layout, int samplesPerPixel, const icPixelLayout_t& source)
        : layout_(layout), samples_(samplesPerPixel) {
        if (packed() || source.lineCount < 1) return;
        // What the kernel touches and what the copy touches, whatever the layouts say.
        const int64_t byKernel = int64_t{samplesPerPixel} * std::max(source.pixelCount, 0);
        const int64_t byCopy = int64_t{layout.channelCount} * std::max(layout.pixelCount, 0);
        const auto bytes = static_cast<uint64_t>(std::max(byKernel, byCopy)) *
                           static_cast<uint64_t>(sampleSize(layout));
        scratch_ = allocateZeroed<uint8_t>(static_cast<size_t>(bytes));
        if (!scratch_) throw std::bad_alloc();
    }

    bool packed() const { return layout_.contiguous != 0; }

    /// Whether lines follow one another without a gap when the kernel's pixels fill them.
    bool gapless(int32_t pixels) const {
        return packed() && layout_.lineStep == int64_t{pixels} * samples_ * sampleSize(layout_);
    }

    void* line(int32_t i) const { return packed() ? lineStart(layout_, 0, i) : scratch_.get(); }

    void gather(int32_t i) const {
        if (packed()) return;
        layout_.dataType == icSamples8 ? unpackLine<uint8_t>(layout_, i, scratch_.get())
                                       : unpackLine<uint16_t>(layout_, i, scratch_.get());
    }

    void scatter(int32_t i) const {
        if (packed()) return;
        layout_.dataType == icSamples8 ? packLine<uint8_t>(layout_, i, scratch_.get())
                                       : packLine<uint16_t>(layout_, i, scratch_.get());
    }

  private:
    const icPixelLayout_t& layout_;
    int samples_;
    CHeapPtr<uint8_t> scratch_;
};

/// Reports progress to a callback, if there is one.
struct Progress {
    icProgressCallback callback;
    void* user;

    void start() const {
        if (callback != nullptr) callback(icIterStart, 0, user);
    }
    bool stopAfter(int32_t line, int32_t lines) const {
        if (callback == nullptr) return false;
        // The numerator is a 32-bit number, which wraps beyond 21 million lines.
        const auto hundredfold = static_cast<int32_t>(static_cast<uint32_t>(line) * 100U);
        return callback(icIterProgress, hundredfold / lines, user) != 0;
    }
    int end() const { return callback != nullptr ? callback(icIterEnd, 100, user) : icSuccess; }
};

/// Lines that one kernel call may take. Starting threads costs more than converting a line, so
/// lines that form one run are handed over together, unless a callback is called for each.
int32_t linesPerCall(const BoundKernel& kernel, const Side& in, const Side& out, int32_t pixels,
                     const Progress& progress) {
    if (progress.callback != nullptr || kernel.perLine || pixels < 1) return 1;
    if (!in.gapless(pixels) || !out.gapless(pixels)) return 1;
    return std::numeric_limits<int32_t>::max() / pixels;
}

void convertLines(const BoundKernel& kernel, const Side& in, const Side& out, int32_t pixels,
                  int32_t lines, const Progress& progress) {
    const int32_t most = linesPerCall(kernel, in, out, pixels, progress);
    for (int32_t i = 0; i < lines;) {
        const int32_t count = std::min(most, lines - i);
        in.gather(i);
        kernel(in.line(i), out.line(i), pixels * count);
        out.scatter(i);
        if (progress.stopAfter(i, lines)) return;
        i += count;
    }
}

int evaluate(const icXformInternal& xform, const icPixelLayout_t& source,
             const icPixelLayout_t& destination, const Progress& progress) {
    if (!addressable(source, source) || !addressable(destination, source)) {
        return icErrInvalid;
    }
    if (!isSampleType(source.dataType) || !isSampleType(destination.dataType)) {
        // No error: nothing is converted, and the callback's answer is the result.
        progress.start();
        return progress.end();
    }
    const BoundKernel kernel = chooseKernel(xform, depthOf(source), depthOf(destination));
    if (!kernel) return icErrXformKind;
    const Side in(source, kernel.inSamples, source);
    const Side out(destination, kernel.outSamples, source);
    progress.start();
    convertLines(kernel, in, out, source.pixelCount, source.lineCount, progress);
    return progress.end();
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icEvaluate(icXform_t xform, const icPixelLayout_t* source, const icPixelLayout_t* destination,
               icProgressCallback progress, void* user) {
    if (xform == nullptr || source == nullptr || destination == nullptr) return icErrInvalid;
    return guarded([&] { return evaluate(*xform, *source, *destination, {progress, user}); });
}
