// SPDX-License-Identifier: Apache-2.0
//
// From the chromaticities of a display to the colorants of its profile.
#pragma once

#include <array>
#include <cstdint>

namespace lumoxa_tool {

/// CIE 1931 chromaticity coordinates.
struct Chromaticity {
    double x = 0, y = 0;
};

struct DisplayColorimetry {
    std::array<Chromaticity, 3> primaries;  ///< red, green, blue
    Chromaticity white;
};

/// XYZ in s15Fixed16.
using FixedXyz = std::array<int32_t, 3>;

/// D50 of the connection space, as headers carry it.
inline constexpr FixedXyz kD50 = {63190, 65536, 54061};

/// What a matrix profile says of its colours.
struct DisplayMatrix {
    std::array<FixedXyz, 3> colorants;   ///< red, green, blue; they add up to D50 exactly
    std::array<FixedXyz, 3> adaptation;  ///< rows of the matrix from the display's white to D50
};

/// The colorants of a display, adapted to the D50 of the connection space.
/// @throws UsageError for what no display can be: primaries on a line, a white outside of them
DisplayMatrix displayMatrix(const DisplayColorimetry& colorimetry);

}  // namespace lumoxa_tool
