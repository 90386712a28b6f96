// SPDX-License-Identifier: Apache-2.0
//
// Display profiles out of chromaticities and a tone curve.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "lumoxa/types.h"
#include "tools/display_colorimetry.h"

namespace lumoxa_tool {

/// Version of the profiles made here, as in the header: 2.4.
inline constexpr uint32_t kDisplayVersion = 0x02400000;

inline constexpr const char* kFreeCopyright = "No copyright, use freely";

struct DisplayProfile {
    DisplayColorimetry colorimetry;
    std::vector<uint8_t> curve;  ///< whole tag, for all three channels
    std::string description, copyright;
    icDateTimeNumber created = {};
};

/// A whole matrix/TRC profile of the display. @throws UsageError as displayMatrix and text tags do
std::vector<uint8_t> makeDisplayProfile(const DisplayProfile& display);

}  // namespace lumoxa_tool
