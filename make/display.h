// SPDX-License-Identifier: Apache-2.0
//
// Display profiles out of chromaticities and a tone curve.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "convert/colorimetry.h"
#include "make/curve_tag.h"
#include "profile/new_profile.h"

namespace lumoxa::engine {

struct DisplayForm {
    DisplayColorimetry colorimetry;
    ToneCurveForm curve;           ///< of all three channels
    uint32_t version = kVersion4;  ///< kVersion2 or kVersion4
    std::string description, copyright;
};

/// The bytes of a profile of class 'mntr', created now: matrix and curves, adapted to D50 with the
/// Bradford transform, which 'chad' states.
/// @throws FaultError for another version, and as displayMatrix, toneCurveTag and textTagFor do
std::vector<uint8_t> makeDisplay(const DisplayForm& display);

}  // namespace lumoxa::engine
