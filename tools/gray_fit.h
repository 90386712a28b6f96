// SPDX-License-Identifier: Apache-2.0
//
// How neutral the prints of a gray profile are, found by converting some tones.
#pragma once

#include <array>
#include <vector>

#include "lumoxa/lumoxa.h"

namespace lumoxa_tool {

using Lab = std::array<double, 3>;

/// Colours that a neutral print has at device values 0..65535 of the main channel.
/// @throws InputError where no tones can be fitted to the profile's patches
std::vector<Lab> tonesOfDevice(icProfile_t profile, const std::vector<double>& device);

/// How near neutral prints come to it.
struct NeutralFit {
    struct Range {
        double dark, light;  ///< L*
    };
    double black = 0, paper = 0;                            ///< L* of the device's ends
    double meanError = 0, largestError = 0, largestAt = 0;  ///< a* and b*; L* of the largest
    std::vector<Range> clips;  ///< L* where the companions can't reach neutral, dark first
};

/// An error in a* and b* that shows beside a neutral patch.
inline constexpr double kVisibleTone = 1.5;

/// Converts L* from black to paper to the device and back, relative to the paper.
/// @throws InputError as tonesOfDevice
NeutralFit neutralFit(icProfile_t profile);

}  // namespace lumoxa_tool
