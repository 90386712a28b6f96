// SPDX-License-Identifier: Apache-2.0
//
// Colours gathered and scattered, extra channels copied. Every sample is loaded and stored byte by
// byte as far as the language is concerned (memcpy of a constant size), which compilers turn into
// one unaligned access.
#include "convert/line_kernels.h"

#include <cstring>

#include "base/byte_order.h"
#include "convert/samples.h"

namespace lumoxa::engine {
namespace {

bool isPacked(const LinePart& part, int channels, ptrdiff_t sampleBytes) {
    return part.pixelStride == channels * sampleBytes &&
           (channels == 1 || part.channelStride == sampleBytes);
}

template <class Word, class Byte>
Byte* packedAt(Byte* packed, ptrdiff_t index) {
    return packed + index * static_cast<ptrdiff_t>(sizeof(Word));
}

template <class Word>
void gather(LinePart from, int channels, ptrdiff_t pixels, void* packed) {
    if (isPacked(from, channels, sizeof(Word))) {
        std::memcpy(packed, from.first, static_cast<size_t>(pixels * from.pixelStride));
        return;
    }
    auto* to = static_cast<uint8_t*>(packed);
    withChannels(channels, [=](auto count) {
        for (ptrdiff_t i = 0; i < pixels; ++i) {
            for (ptrdiff_t c = 0; c < count; ++c)
                storeRaw(packedAt<Word>(to, i * count + c), loadRaw<Word>(from.at(i, c)));
        }
    });
}

template <class Word>
void scatter(const void* packed, LinePart to, int channels, ptrdiff_t pixels) {
    if (isPacked(to, channels, sizeof(Word))) {
        std::memcpy(to.first, packed, static_cast<size_t>(pixels * to.pixelStride));
        return;
    }
    const auto* from = static_cast<const uint8_t*>(packed);
    withChannels(channels, [=](auto count) {
        for (ptrdiff_t i = 0; i < pixels; ++i) {
            for (ptrdiff_t c = 0; c < count; ++c)
                storeRaw(to.at(i, c), loadRaw<Word>(packedAt<Word>(from, i * count + c)));
        }
    });
}

template <class From, class To>
void copyExtras(LinePart from, LinePart to, int channels, ptrdiff_t pixels) {
    for (ptrdiff_t c = 0; c < channels; ++c) {
        for (ptrdiff_t i = 0; i < pixels; ++i)
            storeRaw(to.at(i, c), converted(loadRaw<From>(from.at(i, c)), To{}));
    }
}

template <class From>
CopyExtrasFn copyExtrasFrom(SampleType to) {
    switch (to) {
        case SampleType::kU8:
            return copyExtras<From, uint8_t>;
        case SampleType::kU16:
            return copyExtras<From, uint16_t>;
        default:
            return copyExtras<From, float>;
    }
}

}  // namespace

GatherFn gatherKernel(SampleType type) {
    switch (type) {
        case SampleType::kU8:
            return gather<uint8_t>;
        case SampleType::kU16:
            return gather<uint16_t>;
        default:
            return gather<uint32_t>;
    }
}

ScatterFn scatterKernel(SampleType type) {
    switch (type) {
        case SampleType::kU8:
            return scatter<uint8_t>;
        case SampleType::kU16:
            return scatter<uint16_t>;
        default:
            return scatter<uint32_t>;
    }
}

CopyExtrasFn copyExtrasKernel(SampleType from, SampleType to) {
    switch (from) {
        case SampleType::kU8:
            return copyExtrasFrom<uint8_t>(to);
        case SampleType::kU16:
            return copyExtrasFrom<uint16_t>(to);
        default:
            // Words, not numbers: a signalling NaN stays one.
            return to == SampleType::kF32 ? copyExtras<uint32_t, uint32_t>
                                          : copyExtrasFrom<float>(to);
    }
}

}  // namespace lumoxa::engine
