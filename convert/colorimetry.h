// SPDX-License-Identifier: Apache-2.0
//
// From the chromaticities of a display or an RGB space to the colorants of its profile.
#pragma once

#include <array>

#include "profile/tag_bytes.h"

namespace lumoxa::engine {

/// CIE 1931 chromaticity coordinates.
struct Chromaticity {
    double x = 0, y = 0;
};

struct DisplayColorimetry {
    std::array<Chromaticity, 3> primaries;  ///< red, green, blue
    Chromaticity white;
};

/// The white of the connection space itself; to four digits x = 0.3457, y = 0.3585.
inline constexpr Chromaticity kD50Chromaticity = {
    static_cast<double>(kD50Xyz[0]) / (kD50Xyz[0] + kD50Xyz[1] + kD50Xyz[2]),
    static_cast<double>(kD50Xyz[1]) / (kD50Xyz[0] + kD50Xyz[1] + kD50Xyz[2])};

/// What a matrix profile says of its colours.
struct DisplayMatrix {
    std::array<FixedXyz, 3> colorants;   ///< red, green, blue; they add up to D50 exactly
    std::array<FixedXyz, 3> adaptation;  ///< rows of the matrix from the display's white to D50
};

/// The colorants of a display, adapted to the D50 of the connection space.
/// @throws FaultError for what no display can be: primaries on a line, a white outside of them
DisplayMatrix displayMatrix(const DisplayColorimetry& colorimetry);

/// The Bradford adaptation from a white to D50 (ICC.1:2010, annex E), row by row.
/// @throws FaultError for a white that no colours can be adapted from
std::array<FixedXyz, 3> bradfordToD50(const Chromaticity& white);

}  // namespace lumoxa::engine
