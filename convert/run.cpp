// SPDX-License-Identifier: Apache-2.0
//
// The run: a picture is one row of pixels in raster order, cut into batches between calls of
// progress, a batch into slices for threads, a slice into chunks for the plan.
//
// A chunk is read whole, colours and alpha, before any of it is written, which is all that a run in
// place needs: its extra channels are there already. Slices share no pixel, hence no lock.
#include "convert/run.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <string>
#include <vector>

#include "base/fan_out.h"
#include "base/fault.h"
#include "convert/chunks.h"

namespace lumoxa::engine {
namespace {

/// Most threads that a caller may ask for: bounds the memory for their buffers.
constexpr int64_t kMaxThreads = 256;

/// Between two calls of progress, each thread has at least so many pixels: threads are started for
/// each batch, and here take a few percent of its time at most.
constexpr int64_t kBatchPixelsPerThread = 65536;

/// Calls of progress in a large picture.
constexpr int64_t kMaxBatches = 64;

/// What a thread works with.
struct Slice {
    std::byte* buffer = nullptr;
    std::exception_ptr thrown = nullptr;
};

class Run {
  public:
    Run(const ChunkConverter& converter, int64_t rowPixels, int64_t rows, const RunOptions& options)
        : converter_(converter),
          options_(options),
          rowPixels_(rowPixels),
          pixels_(rowPixels * rows),
          slices_(static_cast<size_t>(threadsFor(pixels_))),
          buffers_(std::make_unique_for_overwrite<std::byte[]>(slices_.size() *
                                                               converter.bufferBytes())) {
        for (size_t i = 0; i < slices_.size(); ++i)
            slices_[i].buffer = buffers_.get() + i * converter.bufferBytes();
    }

    RunResult drive() {
        if (!goesOn(0)) return RunResult::kCancelled;
        const int64_t batch = batchPixels();
        for (int64_t first = 0; first < pixels_; first += batch) {
            if (first > 0 && !goesOn(static_cast<double>(first) / static_cast<double>(pixels_))) {
                return RunResult::kCancelled;
            }
            convert(first, std::min(batch, pixels_ - first));
        }
        goesOn(1);
        return RunResult::kDone;
    }

  private:
    bool goesOn(double done) const {
        return options_.progress == nullptr || options_.progress(done, options_.user);
    }

    int64_t threadsFor(int64_t pixels) const {
        const int64_t most = options_.threads == 0 ? hardwareThreads() : options_.threads;
        return threadsForPixels(pixels, std::min(most, kMaxThreads));
    }

    /// Whole rows, so that a cancelled run leaves whole rows.
    int64_t batchPixels() const {
        if (options_.progress == nullptr || pixels_ == 0) return std::max<int64_t>(pixels_, 1);
        const int64_t worth = kBatchPixelsPerThread * static_cast<int64_t>(slices_.size());
        const int64_t least = std::max(pixels_ / kMaxBatches, worth);
        return std::min((least + rowPixels_ - 1) / rowPixels_ * rowPixels_, pixels_);
    }

    void convert(int64_t first, int64_t count) {
        fanOutWithCaller(
            count, threadsFor(count), [this, first](int64_t slice, int64_t offset, int64_t pixels) {
                convertSlice(slices_[static_cast<size_t>(slice)], first + offset, pixels);
            });
        for (const Slice& slice : slices_) {
            if (slice.thrown) std::rethrow_exception(slice.thrown);
        }
    }

    /// An exception may not leave a thread, so it waits for the others to end.
    void convertSlice(Slice& slice, int64_t first, int64_t count) const {
        try {
            converter_.convert(first, count, slice.buffer);
        } catch (...) {
            slice.thrown = std::current_exception();
        }
    }

    const ChunkConverter& converter_;
    const RunOptions& options_;
    int64_t rowPixels_;
    int64_t pixels_;
    std::vector<Slice> slices_;
    std::unique_ptr<std::byte[]> buffers_;
};

}  // namespace

RunResult runConversion(const Plan& plan, const PixelView& source, const PixelView& destination,
                        const RunOptions& options) {
    const ViewMatch match = checkViews(plan.inputs(), plan.outputs(), source, destination);
    if (options.threads < 0) {
        throw FaultError(icErrInvalid,
                         "a run has 0 or more threads, not " + std::to_string(options.threads));
    }
    const ChunkConverter converter(plan, source, destination, match, options.premultiplied);
    return Run(converter, source.width, source.height, options).drive();
}

}  // namespace lumoxa::engine
