// SPDX-License-Identifier: Apache-2.0
//
// A profile as the detection of black points asks it (black_point.h).
#pragma once

#include "convert/black_point.h"
#include "convert/profile_stages.h"

namespace lumoxa::engine {

enum class BlackPointRole { kSource, kDestination };

/// Whether black points are found for a profile (ISO 18619: devices; Lab and XYZ as spaces of their
/// own have no black but zero, and readings of colour want it as it is).
bool hasBlackPoint(const ProfileView& profile, Direction direction);

/// Whether a destination's own colours can be told, without which it has no black to find.
bool leadsBackToLab(const ProfileView& destination, uint32_t intent);

/// @param intent  perceptual, relative colorimetric or saturation
/// @throws FaultError when the profile lacks a transform that the detection needs
BlackPointProbe blackProbeOf(const ProfileView& profile, icRenderingIntent intent,
                             BlackPointRole role);

/// Makes what stages give Lab, if it is XYZ of the connection space.
void appendToLab(StageList& stages, uint32_t pcs);

}  // namespace lumoxa::engine
