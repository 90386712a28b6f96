// SPDX-License-Identifier: Apache-2.0
//
// White points of a profile in the 16-bit XYZ encoding.
#pragma once

#include "profile/profile_object.h"

namespace lumoxa {

/// The header's illuminant: the white of the connection space.
void connectionSpaceWhite(const icProfileInternal& profile, uint16_t (&white)[3]);

/// The media white point, or the connection-space white when the profile has none to be read.
void mediaWhite(const icProfileInternal& profile, uint16_t (&white)[3]);

}  // namespace lumoxa
