// SPDX-License-Identifier: Apache-2.0
//
// An sRGB display profile, for images that carry none.
#pragma once

#include <cstdint>
#include <vector>

namespace lumoxa_tool {

/// The word that stands for the built-in profile on the command line.
inline constexpr const char* kBuiltInSrgb = "sRGB";

/// The two-part curve of IEC 61966-2-1 as a tag.
std::vector<uint8_t> srgbCurveTag();

/// A complete version 2 profile of IEC 61966-2-1: matrix and curves, the same bytes on each call.
std::vector<uint8_t> makeSrgbProfile();

}  // namespace lumoxa_tool
