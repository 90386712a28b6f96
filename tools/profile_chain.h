// SPDX-License-Identifier: Apache-2.0
//
// From a row of profiles to the transforms that lead from the first device to the last.
#pragma once

#include <vector>

#include "tools/chain_link.h"

namespace lumoxa_tool {

/// The transforms of a chain, by what each profile is and where it stands:
///
/// - a device at the start, or behind a device link: from the device to the connection space;
/// - a device further on: to the device, and back again unless it is the last or a device link
///   follows, as in a proof: display, press, display;
/// - an abstract profile: from connection space to connection space;
/// - a device link: the conversion that it stores.
///
/// @param profiles  at least two
/// @throws InputError naming the profile that can't stand where it stands
std::vector<ChainLink> chainOfProfiles(const std::vector<Profile>& profiles,
                                       icRenderingIntent intent);

}  // namespace lumoxa_tool
