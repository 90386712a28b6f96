// SPDX-License-Identifier: Apache-2.0
//
// Tags set and removed in a profile that is held in memory.
#pragma once

#include <array>
#include <string_view>

#include "make/curve_tag.h"
#include "profile/profile_object.h"

namespace lumoxa::engine {

// Each leaves the profile as it was when it throws, and otherwise clears its identifier, which is a
// digest of what it was (ICC.1:2010, 7.2.18). All throw FaultError for a profile whose tags stay in
// its file, and std::bad_alloc.

/// @throws FaultError as textTagFor
void setText(icProfileInternal& profile, uint32_t signature, std::string_view text);

/// Sets the media white ('wtpt').
/// @param xyz  Y = 1 for a perfect white
/// @throws FaultError for a number that s15Fixed16 doesn't hold above 0
void setWhite(icProfileInternal& profile, const std::array<double, 3>& xyz);

/// @param signature  'rTRC', 'gTRC', 'bTRC' or 'kTRC'
/// @throws FaultError for another signature, and as toneCurveTag
void setCurve(icProfileInternal& profile, uint32_t signature, const ToneCurveForm& curve);

/// Removes each tag of that signature.
/// @throws FaultError where there is none, and where no other tag is left
void removeTag(icProfileInternal& profile, uint32_t signature);

}  // namespace lumoxa::engine
