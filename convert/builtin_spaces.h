// SPDX-License-Identifier: Apache-2.0
//
// Profiles of the colour spaces that everybody knows, made from their published numbers.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace lumoxa::engine {

/// The bytes of a whole profile, version 4.3, the same on each call and machine: a display profile
/// of matrix and curves for the RGB spaces, of a curve for gray, and an identity for Lab and XYZ.
///
/// @param name  "sRGB", "AdobeRGB", "DisplayP3", "Rec2020", "ProPhotoRGB", "gray" (sRGB's curve),
///              "gray-2.2", "Lab" or "XYZ"; ASCII, in capitals or not
/// @throws FaultError with icErrInvalid for another name
std::vector<uint8_t> builtInSpace(std::string_view name);

/// The names, as above.
std::vector<std::string_view> builtInSpaceNames();

}  // namespace lumoxa::engine
