// SPDX-License-Identifier: Apache-2.0
//
// Tone curves as tables.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "lumoxa/lumoxa.h"

namespace lumoxa_tool {

/// A 'curv' tag with 4096 entries of a curve over 0..1, whose values are clipped to 0..1.
std::vector<uint8_t> sampledCurveTag(const std::function<double(double)>& curve);

/// A copy of a profile with its parametric tone curves ('rTRC', 'gTRC', 'bTRC', 'kTRC') sampled;
/// empty when it has none to sample.
///
/// The library's tables of parametric curves leave parts of types 2 to 4 unscaled, which callers
/// rely on, and which would turn the shadows of many display profiles black. Tables of sampled
/// curves have none of it. Faulty curves stay as they are, for the library to refuse.
///
/// @param profile  a profile whose tags lie within its bytes
/// @param tags     its tag table, in order
std::vector<uint8_t> withSampledCurves(const std::vector<uint8_t>& profile,
                                       const std::vector<icTag_safe64bit>& tags);

}  // namespace lumoxa_tool
