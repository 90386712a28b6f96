// SPDX-License-Identifier: Apache-2.0
//
// Checks of views: each by itself, then both together. Sizes and strides come from the caller and
// may be anything, so no product is formed before it is known to fit.
#include "convert/image_view.h"

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "base/fault.h"

namespace lumoxa::engine {
namespace {

constexpr int64_t kMostBytes = std::numeric_limits<int64_t>::max();

/// Samples along one dimension of a view, and the bytes from one to the next: 0 where only one is.
struct Dimension {
    const char* name;
    int64_t size;
    int64_t stride;

    Dimension(const char* plural, int64_t count, int64_t bytes)
        : name(plural), size(count), stride(count > 1 ? bytes : 0) {}
    bool isRead() const { return size > 1; }
    int64_t distance() const { return stride < 0 ? -stride : stride; }
};

using Dimensions = std::array<Dimension, 3>;

Dimensions dimensionsOf(const PixelView& view) {
    return {Dimension("channels", view.channels, view.channelStride),
            Dimension("pixels", view.width, view.pixelStride),
            Dimension("rows", view.height, view.rowStride)};
}

[[noreturn]] void refuse(const std::string& sentence, int code = icErrInvalid) {
    throw FaultError(code, sentence);
}

bool isKnown(SampleType type) {
    return type == SampleType::kU8 || type == SampleType::kU16 || type == SampleType::kF32;
}

int64_t sampleBytes(const PixelView& view) {
    return static_cast<int64_t>(bytesOf(view.sample));
}

bool isEmpty(const PixelView& view) {
    return view.width == 0 || view.height == 0;
}

std::string sizeText(const PixelView& view) {
    return std::to_string(view.width) + " x " + std::to_string(view.height) + " pixels";
}

void checkNumbers(const PixelView& view, const std::string& name) {
    if (!isKnown(view.sample)) {
        refuse("the " + name + " has the unknown sample type " +
               std::to_string(static_cast<int32_t>(view.sample)));
    }
    if (view.channels < 1 || view.channels > kMaxViewChannels) {
        refuse("the " + name + " has " + std::to_string(view.channels) + " channels, not 1 to " +
               std::to_string(kMaxViewChannels));
    }
    if (std::min(view.width, view.height) < 0 || std::max(view.width, view.height) > kMaxViewSide) {
        refuse("the " + name + " has " + sizeText(view) + ", and a side has 0 to " +
               std::to_string(kMaxViewSide));
    }
    if (view.data == nullptr && !isEmpty(view)) {
        refuse("the " + name + " has " + sizeText(view) + ", but its data is null", icErrNullData);
    }
}

/// Bytes from the first to the last sample along a dimension. A stride whose magnitude is no
/// int64_t counts as too large.
int64_t reachOf(const Dimension& dimension, const std::string& name) {
    if (!dimension.isRead()) return 0;
    const int64_t steps = dimension.size - 1;
    if (dimension.stride < -kMostBytes / steps || dimension.stride > kMostBytes / steps) {
        refuse("the " + name + "'s " + std::to_string(dimension.size) + " " + dimension.name +
               ", " + std::to_string(dimension.stride) + " bytes apart, exceed all memory");
    }
    return steps * dimension.stride;
}

/// First and last byte of a view, from its first sample.
struct Extent {
    int64_t low = 0;
    int64_t high = 0;
};

void checkAddresses(const PixelView& view, const Extent& extent, const std::string& name) {
    const auto address = reinterpret_cast<uintptr_t>(view.data);
    const bool below = address < static_cast<uintptr_t>(-extent.low);
    const bool above =
        std::numeric_limits<uintptr_t>::max() - address < static_cast<uintptr_t>(extent.high);
    if (below || above) {
        refuse("the " + name + "'s strides reach from byte " + std::to_string(extent.low) +
               " to byte " + std::to_string(extent.high) +
               " of its data, which exceeds all memory");
    }
}

Extent extentOf(const PixelView& view, const std::string& name) {
    Extent extent{0, sampleBytes(view) - 1};
    for (const Dimension& dimension : dimensionsOf(view)) {
        const int64_t reach = reachOf(dimension, name);
        // Both ends together are kept below kMostBytes: sums of offsets then fit, too.
        if (std::max(reach, -reach) > kMostBytes - 1 - (extent.high - extent.low)) {
            refuse("the " + name + "'s strides of " + std::to_string(view.channelStride) + ", " +
                   std::to_string(view.pixelStride) + " and " + std::to_string(view.rowStride) +
                   " bytes exceed all memory");
        }
        (reach < 0 ? extent.low : extent.high) += reach;
    }
    checkAddresses(view, extent, name);
    return extent;
}

/// Sorted by stride, each dimension has to step over all that the ones before it cover.
void checkStrides(const PixelView& view, const std::string& name) {
    Dimensions dimensions = dimensionsOf(view);
    std::sort(dimensions.begin(), dimensions.end(),
              [](const Dimension& a, const Dimension& b) { return a.distance() < b.distance(); });
    int64_t covered = sampleBytes(view);
    for (const Dimension& d : dimensions) {
        if (!d.isRead()) continue;
        if (d.distance() < covered) {
            refuse("the " + name + "'s " + d.name + " overlap: they are " +
                   std::to_string(d.stride) + " bytes apart and " + std::to_string(covered) +
                   " bytes long");
        }
        covered += d.distance() * (d.size - 1);
    }
}

void checkChannels(int inputs, int outputs, const PixelView& source, const PixelView& destination) {
    const int extras = source.channels - inputs;
    if (extras >= 0 && extras == destination.channels - outputs) return;
    refuse("the source has " + std::to_string(source.channels) + " channels and the destination " +
           std::to_string(destination.channels) + ", but the conversion takes " +
           std::to_string(inputs) + " and gives " + std::to_string(outputs) +
           ", with equally many extra ones on both sides");
}

/// Whether all samples of a pixel lie together, before those of the next.
bool isWithinPixels(const PixelView& view) {
    const int64_t last = (view.channels - 1) * view.channelStride;
    const int64_t bytes = last + sampleBytes(view);
    return last >= 0 && (bytes <= view.pixelStride || view.pixelStride <= -bytes);
}

/// A run in place reads pixels before it writes them, so what matters is that pixels stay where
/// they are. Extra channels stay as they are, too: their samples have to be the same.
bool isSameMemory(const PixelView& a, const PixelView& b, int extras) {
    if (a.data != b.data) return false;
    if (extras == 0 && a.pixelStride == b.pixelStride && a.rowStride == b.rowStride &&
        isWithinPixels(a) && isWithinPixels(b)) {
        return true;
    }
    if (a.sample != b.sample || a.channels != b.channels) return false;
    const Dimensions ours = dimensionsOf(a);
    const Dimensions theirs = dimensionsOf(b);
    return std::equal(ours.begin(), ours.end(), theirs.begin(),
                      [](const Dimension& x, const Dimension& y) { return x.stride == y.stride; });
}

struct Bytes {
    uintptr_t first;
    uintptr_t last;
};

Bytes bytesOfExtent(const PixelView& view, const Extent& extent) {
    const auto address = reinterpret_cast<uintptr_t>(view.data);
    return {address - static_cast<uintptr_t>(-extent.low),
            address + static_cast<uintptr_t>(extent.high)};
}

/// What is left of an extent where addresses count modulo `modulus`: dimensions that step by
/// multiples of it fall on themselves.
Extent foldedExtent(const PixelView& view, int64_t modulus) {
    Extent extent{0, sampleBytes(view) - 1};
    for (const Dimension& d : dimensionsOf(view)) {
        if (!d.isRead() || d.stride % modulus == 0) continue;
        const int64_t reach = (d.size - 1) * d.stride;
        (reach < 0 ? extent.low : extent.high) += reach;
    }
    return extent;
}

/// Whether no byte of one has the address of a byte of the other modulo `modulus`. With the row
/// stride of a picture as modulus, this tells its columns apart; with its pixel stride, channels.
bool isDisjointModulo(int64_t modulus, const PixelView& a, const PixelView& b) {
    const Extent extentA = foldedExtent(a, modulus);
    const Extent extentB = foldedExtent(b, modulus);
    const Bytes bytesA = bytesOfExtent(a, extentA);
    const Bytes bytesB = bytesOfExtent(b, extentB);
    const auto m = static_cast<uintptr_t>(modulus);
    const uintptr_t lengthA = bytesA.last - bytesA.first + 1;
    const uintptr_t lengthB = bytesB.last - bytesB.first + 1;
    if (lengthA > m || lengthB > m) return false;
    const uintptr_t fromAToB = (bytesB.first % m + (m - bytesA.first % m)) % m;
    return fromAToB >= lengthA && m - fromAToB >= lengthB;
}

bool isDisjoint(const PixelView& a, const Extent& extentA, const PixelView& b,
                const Extent& extentB) {
    const Bytes bytesA = bytesOfExtent(a, extentA);
    const Bytes bytesB = bytesOfExtent(b, extentB);
    if (bytesA.last < bytesB.first || bytesB.last < bytesA.first) return true;
    for (const PixelView* view : {&a, &b}) {
        for (const Dimension& d : dimensionsOf(*view)) {
            if (d.isRead() && isDisjointModulo(d.distance(), a, b)) return true;
        }
    }
    return false;
}

[[noreturn]] void refuseOverlap(const PixelView& source, const PixelView& destination) {
    if (source.data == destination.data) {
        refuse("source and destination begin at the same byte, but differ in sample type (" +
               std::to_string(sampleBytes(source)) + " and " +
               std::to_string(sampleBytes(destination)) + " bytes), channels (" +
               std::to_string(source.channels) + " and " + std::to_string(destination.channels) +
               ") or strides: in place, pixels have to keep their places, and extra channels their "
               "samples");
    }
    refuse(
        "source and destination share memory without being the same pixels: the destination "
        "begins " +
        std::to_string(static_cast<int64_t>(reinterpret_cast<uintptr_t>(destination.data) -
                                            reinterpret_cast<uintptr_t>(source.data))) +
        " bytes after the source");
}

}  // namespace

ViewMatch checkViews(int inputs, int outputs, const PixelView& source,
                     const PixelView& destination) {
    checkNumbers(source, "source");
    checkNumbers(destination, "destination");
    if (source.width != destination.width || source.height != destination.height) {
        refuse("the source has " + sizeText(source) + ", the destination " + sizeText(destination));
    }
    checkChannels(inputs, outputs, source, destination);
    const int extras = source.channels - inputs;
    if (isEmpty(source)) return {extras, false};
    const Extent sourceExtent = extentOf(source, "source");
    const Extent destinationExtent = extentOf(destination, "destination");
    checkStrides(source, "source");
    checkStrides(destination, "destination");
    if (isSameMemory(source, destination, extras)) return {extras, true};
    if (!isDisjoint(source, sourceExtent, destination, destinationExtent)) {
        refuseOverlap(source, destination);
    }
    return {extras, false};
}

}  // namespace lumoxa::engine
