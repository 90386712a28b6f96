// SPDX-License-Identifier: Apache-2.0
//
// Tone curves of a three-channel gray device, fitted to its patches.
#pragma once

#include <span>

#include "gray/gray_state.h"

namespace lumoxa {

/// What a gray print is to look like: a tone, faded towards paper and black, plus a split tone
/// that changes with L*.
struct ToneRequest {
    TonePair pair;
    float fade = 0.0f;                     // 0..1
    std::span<const float> controlPoints;  // triples of L*, a*, b* in ascending L*
};

/// The six curves, steps + 2 values each. Throws std::bad_alloc.
struct ToneCurves {
    float* x;
    float* companionA;
    float* companionB;
    float* lightness;
    float* a;
    float* b;
};

/// Fits the curves to samples that hold what they should: a paper that reflects light, n of at
/// least 2, 1 to 255 steps. Throws std::bad_alloc.
void fitToneCurves(int n, int steps, const float* samples, int layoutFlag,
                   const ToneRequest& request, const ToneCurves& curves);

/// Fits the curves of a state anew.
void refitToneCurves(GrayConv_t& state, const ToneRequest& request);

}  // namespace lumoxa
