// SPDX-License-Identifier: Apache-2.0
//
// Pictures to convert: one as smooth as a photograph, one that defeats every cache.
#pragma once

#include <cstdint>
#include <vector>

#include "lumoxa/evaluate.h"

namespace lumoxa_bench {

inline constexpr int kWidth = 2000;
inline constexpr int kHeight = 1000;
inline constexpr int kPixels = kWidth * kHeight;

enum class Content {
    Photo,  ///< sums of slow waves with grain of about 1 %, so that neighbours share grid cells
    Noise   ///< independent uniform samples, so that neighbours hardly ever do
};

/// Packed samples of kPixels pixels; the same on every run and every machine.
std::vector<uint16_t> makePicture(Content content, int channels);

/// The upper bytes of 16-bit samples.
std::vector<uint8_t> upperBytes(const std::vector<uint16_t>& samples);

/// A packed picture of kPixels pixels cut into lines.
icPixelLayout_t packedLayout(void* samples, int bits, int channels, int lines);

}  // namespace lumoxa_bench
