// SPDX-License-Identifier: Apache-2.0
//
// How neutral the prints of a gray print device are, found by converting some tones.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "profile/profile_object.h"

namespace lumoxa::engine {

using LabTone = std::array<double, 3>;

/// Colours that a neutral print has at device values 0..65535 of the main channel, relative to the
/// paper.
/// @throws FaultError where no tones can be fitted to the profile's patches
std::vector<LabTone> tonesOfDevice(icProfile_t profile, const std::vector<double>& device);

/// How near neutral prints come to it.
struct NeutralFit {
    struct Range {
        double dark, light;  ///< L*
    };
    double black = 0, paper = 0;                            ///< L* of the device's ends
    double meanError = 0, largestError = 0, largestAt = 0;  ///< a* and b*; L* of the largest
    std::vector<Range> clips;  ///< L* where the error shows, dark first
};

/// An error in a* and b* that shows beside a neutral patch.
inline constexpr double kVisibleTone = 1.5;

/// Converts L* from black to paper to the device and back, relative to the paper.
/// @throws FaultError as tonesOfDevice
NeutralFit neutralFit(icProfile_t profile);

/// The fit of a gray print profile with what its patches are, as JSON (docs/gray.md).
/// @throws FaultError also for a profile without patches
std::string grayPrintReport(const ProfileImage& image);

}  // namespace lumoxa::engine
