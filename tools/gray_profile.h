// SPDX-License-Identifier: Apache-2.0
//
// The profile of a gray device of three channels.
#pragma once

#include <string>

#include "tools/gray_table.h"
#include "tools/profile_handle.h"

namespace lumoxa_tool {

/// A version 2.4 output profile with the patches, and with one tone curve for software that knows
/// nothing of them.
/// @throws UsageError for texts that the profile can't hold, InputError for patches that no tones
///         can be fitted to
ProfileHandle makeGrayProfile(const GrayTable& table, const std::string& description,
                              const std::string& copyright);

}  // namespace lumoxa_tool
