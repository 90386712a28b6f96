// SPDX-License-Identifier: Apache-2.0
//
// Saving a profile to a file that appears whole or not at all.
#pragma once

#include <string>

#include "lumoxa/types.h"

namespace lumoxa_tool {

/// Saves a profile, which stays usable. An existing file is replaced when the new one is complete
/// and on the disk, and otherwise stays as it was. From here on Ctrl-C is noted and not died of, so
/// that nothing half-done stays behind.
///
/// @throws InputError, Interrupted
void saveProfile(icProfile_t profile, const std::string& path);

}  // namespace lumoxa_tool
