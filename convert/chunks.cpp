// SPDX-License-Identifier: Apache-2.0
#include "convert/chunks.h"

#include <algorithm>
#include <utility>

namespace lumoxa::engine {
namespace {

/// Pixels of a chunk: enough to make the plan's set-up cheap, few enough for the buffers to stay in
/// the second-level cache (64 KB for four floating-point channels on both sides).
constexpr int64_t kChunkPixels = 2048;

/// Shortest line that is worth a call of the plan. Shorter ones are gathered by the chunk.
constexpr int64_t kShortLine = 64;

/// Buffers begin on cache lines of their own, counted from the first.
constexpr size_t kCacheLine = 64;

Lines linesOf(const PixelView& view) {
    return {static_cast<uint8_t*>(view.data),
            view.channels == 1 ? static_cast<int64_t>(bytesOf(view.sample)) : view.channelStride,
            view.pixelStride, view.rowStride};
}

/// Whether the first pixel of a row comes right after the last one of the row before. Rows and
/// pixels have to be more than one.
bool rowsFollow(const Lines& lines, int64_t width) {
    return lines.rowStride - lines.pixelStride == (width - 1) * lines.pixelStride;
}

/// Whether lines hold nothing but what a plan takes, aligned as it takes it.
bool isPacked(const Lines& lines, int64_t height, int64_t channels, SampleType sample) {
    const auto bytes = static_cast<int64_t>(bytesOf(sample));
    return lines.channelStride == bytes && lines.pixelStride == channels * bytes &&
           reinterpret_cast<uintptr_t>(lines.data) % static_cast<uintptr_t>(bytes) == 0 &&
           (height == 1 || lines.rowStride % bytes == 0);
}

size_t bufferSize(int64_t pixels, int64_t channels, SampleType sample) {
    const size_t bytes = static_cast<size_t>(pixels * channels) * bytesOf(sample);
    return (bytes + kCacheLine - 1) / kCacheLine * kCacheLine;
}

}  // namespace

ChunkConverter::ChunkConverter(const Plan& plan, const PixelView& source,
                               const PixelView& destination, const ViewMatch& match,
                               bool premultiplied)
    : plan_(plan),
      source_(linesOf(source)),
      destination_(linesOf(destination)),
      width_(source.width),
      height_(source.height),
      extras_(match.extras),
      premultiplied_(premultiplied && match.extras > 0),
      copiesExtras_(match.extras > 0 && !match.inPlace),
      in_(premultiplied_ ? straightType(source.sample) : source.sample),
      out_(premultiplied_ ? straightType(destination.sample) : destination.sample),
      gather_(gatherKernel(source.sample)),
      scatter_(scatterKernel(destination.sample)),
      copyExtras_(copyExtrasKernel(source.sample, destination.sample)),
      unpremultiply_(unpremultiplyKernel(source.sample)),
      premultiply_(premultiplyKernel(source.sample, destination.sample)) {
    if (width_ == 0 || height_ == 0) return;
    mergeLines();
    chooseSides();
    sizeBuffers();
}

/// Long lines suit the kernels: a column becomes a line, and rows without gaps become one.
void ChunkConverter::mergeLines() {
    if (width_ == 1) {
        std::swap(width_, height_);
        source_.pixelStride = source_.rowStride;
        destination_.pixelStride = destination_.rowStride;
    }
    if (height_ > 1 && rowsFollow(source_, width_) && rowsFollow(destination_, width_)) {
        width_ *= height_;
        height_ = 1;
    }
}

void ChunkConverter::chooseSides() {
    if (extras_ > 0) return;
    const auto serves = [this](const Lines& lines, int channels, SampleType sample) {
        const bool whole = height_ == 1 || rowsFollow(lines, width_);
        const bool packed = isPacked(lines, height_, channels, sample);
        if (packed && !whole && width_ >= kShortLine) endsAtLines_ = true;
        return packed && (whole || width_ >= kShortLine);
    };
    readsInPlace_ = serves(source_, plan_.inputs(), in_);
    writesInPlace_ = serves(destination_, plan_.outputs(), out_);
}

void ChunkConverter::sizeBuffers() {
    const int64_t pixels = std::min(width_ * height_, kChunkPixels);
    if (!readsInPlace_) inBytes_ = bufferSize(pixels, plan_.inputs(), in_);
    if (!writesInPlace_) outBytes_ = bufferSize(pixels, plan_.outputs(), out_);
    if (premultiplied_) alphaBytes_ = bufferSize(pixels, 1, in_);
}

void ChunkConverter::convert(int64_t first, int64_t count, std::byte* buffer) const {
    const int64_t end = first + count;
    while (first < end) {
        const int64_t pixels = chunkAt(first, end - first);
        convertChunk(first, pixels, buffer);
        first += pixels;
    }
}

/// Pixels of the chunk that begins at `first`, at most `left`.
int64_t ChunkConverter::chunkAt(int64_t first, int64_t left) const {
    if (!readsInPlace_ || !writesInPlace_) left = std::min(left, kChunkPixels);
    return endsAtLines_ ? std::min(left, width_ - first % width_) : left;
}

void ChunkConverter::convertChunk(int64_t first, int64_t pixels, std::byte* buffer) const {
    std::byte* const packedIn = buffer;
    std::byte* const packedOut = buffer + inBytes_;
    std::byte* const alpha = packedOut + outBytes_;
    const int64_t row = first / width_;
    const int64_t pixel = first % width_;
    const void* from = packedIn;
    void* to = packedOut;
    if (readsInPlace_) {
        from = source_.at(row, pixel).first;
    } else {
        read(first, pixels, packedIn, alpha);
    }
    if (writesInPlace_) to = destination_.at(row, pixel).first;
    plan_.convert(in_, from, out_, to, static_cast<ptrdiff_t>(pixels));
    if (!writesInPlace_) write(first, pixels, packedOut, alpha);
}

/// Calls work(row, pixel, pixels, done) for each part of a line in a run; `done` pixels of the run
/// come before it.
template <class Work>
void ChunkConverter::forEachPart(int64_t first, int64_t pixels, Work work) const {
    int64_t row = first / width_;
    int64_t pixel = first % width_;
    for (int64_t done = 0; done < pixels; ++row) {
        const int64_t part = std::min(pixels - done, width_ - pixel);
        work(row, pixel, static_cast<ptrdiff_t>(part), done);
        done += part;
        pixel = 0;
    }
}

void ChunkConverter::read(int64_t first, int64_t pixels, std::byte* packed,
                          std::byte* alpha) const {
    const int colours = plan_.inputs();
    const auto sampleBytes = static_cast<int64_t>(bytesOf(in_));
    forEachPart(first, pixels, [&](int64_t row, int64_t pixel, ptrdiff_t part, int64_t done) {
        const LinePart line = source_.at(row, pixel);
        std::byte* const to = packed + done * colours * sampleBytes;
        if (premultiplied_) {
            unpremultiply_(line, colours, part, to, alpha + done * sampleBytes);
        } else {
            gather_(line, colours, part, to);
        }
    });
}

void ChunkConverter::write(int64_t first, int64_t pixels, const std::byte* packed,
                           const std::byte* alpha) const {
    const int colours = plan_.outputs();
    const auto pixelBytes = static_cast<int64_t>(bytesOf(out_)) * colours;
    const auto alphaBytes = static_cast<int64_t>(bytesOf(in_));
    forEachPart(first, pixels, [&](int64_t row, int64_t pixel, ptrdiff_t part, int64_t done) {
        const LinePart line = destination_.at(row, pixel);
        const std::byte* const from = packed + done * pixelBytes;
        if (premultiplied_) {
            premultiply_(from, alpha + done * alphaBytes, line, colours, part);
        } else {
            scatter_(from, line, colours, part);
        }
        if (copiesExtras_) {
            copyExtras_(source_.at(row, pixel).channelsFrom(plan_.inputs()),
                        line.channelsFrom(colours), extras_, part);
        }
    });
}

}  // namespace lumoxa::engine
