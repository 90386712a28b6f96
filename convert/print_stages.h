// SPDX-License-Identifier: Apache-2.0
//
// What presses need on top of a chain: black ink that stays alone, colours out of gamut marked,
// total ink limited.
#pragma once

#include "convert/chain.h"

namespace lumoxa::engine {

/// The places in a chain where its stages are looked into.
struct PrintSides {
    const ProfileView* gamutDevice = nullptr;  ///< whose gamut is tested
    const ProfileView* destination = nullptr;  ///< the last device, null behind a device link
    StageList toGamutDevice, toDestination;  ///< from the source to the Lab that each is asked for
};

/// Adds to a chain's simplified stages what the request asks for, in this order: black, marks, ink.
/// @throws FaultError where the chain has no place for it
void addPrintStages(Chain& chain, const ChainRequest& request, PrintSides sides);

}  // namespace lumoxa::engine
