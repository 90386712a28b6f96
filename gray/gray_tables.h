// SPDX-License-Identifier: Apache-2.0
//
// The tables of a gray transform: in tables from the device value to L*, a* and b* (kind 'KtoL'),
// out tables from L* to the main channel and its two companions (kind 'LtoK').
#pragma once

#include "gray/pre_luts.h"

namespace lumoxa {

inline constexpr uint32_t kInEntries = 4096;

/// 3856 entries over 0..65535 are 17 apart, so that entry 3840 is L* = 100 (65280).
inline constexpr uint32_t kOutEntries = 3856;

/// Points of a caller's tone curve: L* to print at L* = 256 k on the scale 0..65280.
inline constexpr int kToneCurvePoints = 256;

/// How a print uses the device's range of lightness.
struct Tonality {
    bool perceptual = false;        // spread L* from the device's black instead of cutting it off
    bool shaped = false;            // with perceptual: keep the contrast of the middle tones
    float shapingParameter = 0.0f;  // see shapedTone()
};

/// Builds the in tables of a state that has curves and at least 2 entries. Throws std::bad_alloc.
void buildInTables(GrayConv_t& state, const ToneRequest& request);

/// Builds the out tables of a state that has curves and at least 2 entries. Throws std::bad_alloc.
void buildOutTables(GrayConv_t& state, const ToneRequest& request, const Tonality& tonality);

/// The same after a caller's tone curve of kToneCurvePoints points, without smoothing.
void buildOutTables(GrayConv_t& state, const ToneRequest& request, const float* toneCurve);

}  // namespace lumoxa
