// SPDX-License-Identifier: Apache-2.0
#include "eval/chain_kernels.h"

#include <algorithm>

#include "base/pcs_encoding.h"

namespace lumoxa {
namespace {

uint16_t clippedLab(int value) {
    return static_cast<uint16_t>(std::clamp(value, 0, int{kLabLMax}));
}

}  // namespace

void scaleWhite(const WhiteScaling& s, const uint16_t* source, uint16_t* destination,
                ptrdiff_t pixels, CurveMask) {
    float scale[3];
    for (int c = 0; c < 3; ++c)
        scale[c] = static_cast<float>(s.to[c]) / static_cast<float>(s.from[c]);
    for (ptrdiff_t i = 0; i < pixels; ++i) {
        for (const float factor : scale)
            *destination++ = roundClipped<uint16_t>(static_cast<float>(*source++) * factor);
    }
}

void squeezeIntoDevice(const icBlackWhite_t& s, const uint16_t* source, uint16_t* destination,
                       ptrdiff_t pixels, CurveMask) {
    float span[3];
    float base[3];
    for (int c = 0; c < 3; ++c) {
        span[c] = static_cast<float>(s.white[c] - s.black[c]);
        base[c] = static_cast<float>(s.black[c] - (c == 0 ? 0 : kLabNeutral));
    }
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const float t = static_cast<float>(source[0]) / static_cast<float>(kLabLMax);
        const int a = source[1];
        const int b = source[2];
        destination[0] = clippedLab(truncated(span[0] * t + base[0]));
        destination[1] = clippedLab(truncated(span[1] * t + base[1]) + a);
        destination[2] = clippedLab(truncated(span[2] * t + base[2]) + b);
    }
}

void stretchFromDevice(const icBlackWhite_t& s, const uint16_t* source, uint16_t* destination,
                       ptrdiff_t pixels, CurveMask) {
    const int range = s.white[0] - s.black[0];
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const int aboveBlack = source[0] - s.black[0];
        // A device without range, where a division would give no number: a threshold.
        int lightness = aboveBlack < 0 ? 0 : int{kLabLMax};
        if (range != 0) {
            const float t = static_cast<float>(aboveBlack) / static_cast<float>(range);
            lightness = truncated(t * static_cast<float>(kLabLMax));
        }
        destination[0] = clippedLab(lightness);
        destination[1] = std::min(source[1], kLabLMax);
        destination[2] = std::min(source[2], kLabLMax);
    }
}

}  // namespace lumoxa
