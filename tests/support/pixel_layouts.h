// SPDX-License-Identifier: Apache-2.0
//
// Pictures in memory of any layout, with random bytes between and around their samples: comparing
// the whole memory finds what was written outside.
#pragma once

#include <cstring>
#include <string>
#include <vector>

#include "convert/image_view.h"
#include "tests/support/sample_types.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {

enum class PixelLayout {
    kInterleaved,
    kPlanar,
    kLineInterleaved,
    kBottomUp,
    kMirrored,
    kReversedChannels,
    kCropped,
    kOddRows,
    kOddAddress,
    kWidePixels,
};
inline constexpr PixelLayout kPixelLayouts[] = {
    PixelLayout::kInterleaved, PixelLayout::kPlanar,   PixelLayout::kLineInterleaved,
    PixelLayout::kBottomUp,    PixelLayout::kMirrored, PixelLayout::kReversedChannels,
    PixelLayout::kCropped,     PixelLayout::kOddRows,  PixelLayout::kOddAddress,
    PixelLayout::kWidePixels,
};
inline const char* const kPixelLayoutNames[] = {
    "Interleaved",      "Planar",  "LineInterleaved", "BottomUp",   "Mirrored",
    "ReversedChannels", "Cropped", "OddRows",         "OddAddress", "WidePixels",
};

inline void PrintTo(PixelLayout layout, std::ostream* out) {
    *out << kPixelLayoutNames[static_cast<int>(layout)];
}

struct PictureSize {
    int64_t width, height;
};

/// A view and its memory. Copies have memory of their own.
class Picture {
  public:
    Picture(PixelLayout layout, lumoxa::engine::SampleType sample, PictureSize size, int channels,
            uint32_t seed)
        : offset_(layout == PixelLayout::kOddAddress ? kMargin + 1 : kMargin) {
        view_.sample = sample;
        view_.width = size.width;
        view_.height = size.height;
        view_.channels = channels;
        memory_.resize(static_cast<size_t>(2 * kMargin + 16 + setStrides(layout)));
        SeededRandom random(seed);
        for (uint8_t& byte : memory_)
            byte = static_cast<uint8_t>(random.upTo(255));
    }

    lumoxa::engine::PixelView view() {
        lumoxa::engine::PixelView view = view_;
        view.data = at(0, 0, 0);
        return view;
    }
    uint8_t* at(int64_t x, int64_t y, int channel) {
        return memory_.data() + offset_ + x * view_.pixelStride + y * view_.rowStride +
               channel * view_.channelStride;
    }
    const std::vector<uint8_t>& memory() const { return memory_; }

  private:
    static constexpr int64_t kMargin = 64;

    /// Returns the bytes from the lowest to the highest sample, or somewhat more.
    int64_t setStrides(PixelLayout layout) {
        const auto bytes = static_cast<int64_t>(bytesOf(view_.sample));
        const int64_t w = view_.width;
        const int64_t h = view_.height;
        const int64_t n = view_.channels;
        const bool wide = layout == PixelLayout::kWidePixels;
        view_.channelStride = bytes;
        view_.pixelStride = n * bytes + (wide ? 5 : 0);
        const int64_t gap = layout == PixelLayout::kCropped   ? view_.pixelStride
                            : layout == PixelLayout::kOddRows ? 41
                                                              : 0;
        view_.rowStride = w * view_.pixelStride + gap;
        if (layout == PixelLayout::kPlanar || layout == PixelLayout::kLineInterleaved) {
            view_.pixelStride = bytes;
            view_.channelStride = layout == PixelLayout::kPlanar ? w * h * bytes : w * bytes;
            view_.rowStride = layout == PixelLayout::kPlanar ? w * bytes : w * n * bytes;
        }
        const int64_t all = h * w * n * bytes + (wide ? 5 * w * h : 0) + gap * h;
        if (layout == PixelLayout::kBottomUp) reverse(view_.rowStride, h);
        if (layout == PixelLayout::kMirrored) reverse(view_.pixelStride, w);
        if (layout == PixelLayout::kReversedChannels) reverse(view_.channelStride, n);
        return all;
    }
    void reverse(int64_t& stride, int64_t size) {
        offset_ += (size - 1) * stride;
        stride = -stride;
    }

    lumoxa::engine::PixelView view_;
    int64_t offset_;
    std::vector<uint8_t> memory_;
};

/// A sample at any address as a number, and back; the number has to fit the type.
inline double sampleAt(const uint8_t* at, lumoxa::engine::SampleType type) {
    const auto as = [at](auto value) {
        std::memcpy(&value, at, sizeof value);
        return static_cast<double>(value);
    };
    if (type == lumoxa::engine::SampleType::kU8) return *at;
    return type == lumoxa::engine::SampleType::kU16 ? as(uint16_t{}) : as(float{});
}

inline void setSample(uint8_t* at, lumoxa::engine::SampleType type, double value) {
    const auto store = [at](auto sample) { std::memcpy(at, &sample, sizeof sample); };
    if (type == lumoxa::engine::SampleType::kU8) store(static_cast<uint8_t>(value));
    if (type == lumoxa::engine::SampleType::kU16) store(static_cast<uint16_t>(value));
    if (type == lumoxa::engine::SampleType::kF32) store(static_cast<float>(value));
}

}  // namespace lumoxa_test
