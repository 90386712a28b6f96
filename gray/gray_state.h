// SPDX-License-Identifier: Apache-2.0
//
// Ownership and shape of the state of a gray transform.
#pragma once

#include <memory>

#include "base/byte_order.h"
#include "base/c_heap.h"
#include "base/pcs_encoding.h"
#include "lumoxa/gray.h"
#include "profile/signatures.h"

namespace lumoxa {

/// The private gray tag.
inline constexpr icTagSignature kGrayTag = fourcc("wzgd");

/// Offsets within it, and the layouts it can have.
namespace gray_layout {
inline constexpr uint32_t kGridSize = 8;
inline constexpr uint32_t kSteps = 10;
inline constexpr uint32_t kLayoutFlag = 11;
inline constexpr uint32_t kSamples = 12;
inline constexpr int kRamp = 2;
inline constexpr int kMostLayout = kRamp;  // 0 and 1 are grids
}  // namespace gray_layout

/// Triples that a gray tag holds: a ramp, or a grid for each step, paper and black.
constexpr uint64_t grayTriples(uint64_t n, uint64_t steps, int layoutFlag) {
    return layoutFlag == gray_layout::kRamp ? n : n * steps * n + 2;
}

/// The triple of the paper: first of a ramp, last but one after grids.
inline const float* grayPaper(const float* samples, uint64_t triples, int layoutFlag) {
    return samples + (layoutFlag == gray_layout::kRamp ? 0 : 3 * (triples - 2));
}

/// Whether a triple reflects light, as the paper must that others are measured against.
inline bool reflectsLight(const float* xyz) {
    return xyz[0] > 0.0f && xyz[1] > 0.0f && xyz[2] > 0.0f;
}

/// Whether a device can have so many patches in that layout.
constexpr bool possibleGrayCounts(int n, int steps, int layoutFlag) {
    constexpr int kMostGrid = 65535;
    constexpr int kMostSteps = 255;
    return n >= 2 && n <= kMostGrid && steps >= 1 && steps <= kMostSteps && layoutFlag >= 0 &&
           layoutFlag <= gray_layout::kMostLayout;
}

/// Whether tone curves can be fitted to samples.
inline bool canFitGray(int n, int steps, int layoutFlag, const float* samples) {
    return possibleGrayCounts(n, steps, layoutFlag) && samples != nullptr &&
           reflectsLight(grayPaper(
               samples,
               grayTriples(static_cast<uint64_t>(n), static_cast<uint64_t>(steps), layoutFlag),
               layoutFlag));
}

/// Releases the blocks of a state, and the state itself.
struct GrayRelease {
    void operator()(GrayConv_t* state) const noexcept {
        if (state == nullptr) return;
        std::free(state->curveX);
        std::free(state->tagData);
        std::free(state->samples);
        std::free(state->inTable1);
        std::free(state->outTable1);
        std::free(state);
    }
};
using GrayStatePtr = std::unique_ptr<GrayConv_t, GrayRelease>;

// The state keeps its tag with the layout flag's byte cleared and N in host order.
inline int graySteps(const GrayConv_t& state) {
    return state.tagData[gray_layout::kSteps];
}
inline int grayGridSize(const GrayConv_t& state) {
    return loadRaw<uint16_t>(state.tagData + gray_layout::kGridSize);
}

/// A wanted tone as a* and b* in the 16-bit Lab encoding.
struct TonePair {
    uint16_t a = kLabNeutral;
    uint16_t b = kLabNeutral;
    bool operator==(const TonePair&) const = default;
};
inline TonePair tonePair(const unsigned short* pair) {
    return pair == nullptr ? TonePair{} : TonePair{pair[0], pair[1]};
}

}  // namespace lumoxa
