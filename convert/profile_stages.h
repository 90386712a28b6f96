// SPDX-License-Identifier: Apache-2.0
//
// The stages of one profile: from its device to the connection space and back, for an intent.
#pragma once

#include "convert/profile_view.h"
#include "convert/stages.h"

namespace lumoxa::engine {

/// One side of a step.
struct Side {
    StageList stages;
    uint32_t pcs = 0;  ///< 'XYZ ' or 'Lab ': what the stages give or take
    uint32_t tag = 0;  ///< the LUT tag they come from, 0 for curves with or without a matrix
};

enum class Direction { kToPcs, kToDevice };

/// The LUT tag that serves an intent: its own, else the first of the three that is there; 0 for
/// none.
uint32_t lutTagOf(const ProfileView& profile, uint32_t intent, Direction direction);

/// @param intent  0..3; absolute colorimetry has the stages of relative, the white is scaled
/// elsewhere
/// @throws FaultError when the profile has no tags for it, or faulty ones
Side sideOf(const ProfileView& profile, uint32_t intent, Direction direction);

/// The stages of a device link or an abstract profile, from its colour space to its connection
/// space.
StageList wholeStages(const ProfileView& profile);

}  // namespace lumoxa::engine
