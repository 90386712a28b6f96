// SPDX-License-Identifier: Apache-2.0
//
// One line of a pixel layout gathered into packed pixels, or scattered from them. Samples are
// copied as they are: depth and byte order change in kernels only.
#pragma once

#include <cstdint>
#include <cstring>

#include "lumoxa/evaluate.h"

namespace lumoxa {

inline constexpr int32_t kMaxLayoutChannels = 32;

/// Address of line `line` of a channel. The offset is a 32-bit product; the driver refuses layouts
/// in which it would wrap, unless their lines are empty.
inline uint8_t* lineStart(const icPixelLayout_t& layout, int32_t channel, int32_t line) {
    const auto offset =
        static_cast<int32_t>(static_cast<uint32_t>(layout.lineStep) * static_cast<uint32_t>(line));
    return static_cast<uint8_t*>(layout.channelData[channel]) + offset;
}

/// Copies every sample of a line between its place in the layout and the packed line.
template <class Copy>
void forEachSample(const icPixelLayout_t& layout, int32_t line, Copy copy) {
    uint8_t* cursor[kMaxLayoutChannels];
    for (int32_t c = 0; c < layout.channelCount; ++c)
        cursor[c] = lineStart(layout, c, line);
    for (int32_t i = 0; i < layout.pixelCount; ++i) {
        for (int32_t c = 0; c < layout.channelCount; ++c) {
            copy(cursor[c]);
            cursor[c] += layout.pixelStep;
        }
    }
}

/// Gathers a line of samples of `Sample`'s size, which need not be aligned, into `packed`.
template <class Sample>
void unpackLine(const icPixelLayout_t& layout, int32_t line, void* packed) {
    auto* next = static_cast<uint8_t*>(packed);
    forEachSample(layout, line, [&next](const uint8_t* at) {
        std::memcpy(next, at, sizeof(Sample));
        next += sizeof(Sample);
    });
}

/// Scatters `packed` into a line.
template <class Sample>
void packLine(const icPixelLayout_t& layout, int32_t line, const void* packed) {
    const auto* next = static_cast<const uint8_t*>(packed);
    forEachSample(layout, line, [&next](uint8_t* at) {
        std::memcpy(at, next, sizeof(Sample));
        next += sizeof(Sample);
    });
}

}  // namespace lumoxa
