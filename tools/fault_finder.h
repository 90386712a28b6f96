// SPDX-License-Identifier: Apache-2.0
//
// Turns a result code about a profile into a sentence that names the tag and the rule it breaks.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/profile_source.h"

namespace lumoxa_tool {

/// What is wrong, as the end of a sentence that names the profile, and what to do about a file.
struct Fault {
    std::string text;
    std::string remedy;
};

/// Why a profile's bytes did not load with `code`.
Fault loadFault(const std::vector<uint8_t>& bytes, int code);

/// Signature of the LUT tag that serves an intent in a direction (the one asked for, else the first
/// of perceptual, relative, saturation), or 0 when the profile has none of them.
uint32_t lutTagFor(const Profile& profile, uint32_t intent, icTransType direction);

/// Why a profile gave no transform.
Fault transformFault(const Profile& profile, uint32_t intent, icTransType direction, int code);

}  // namespace lumoxa_tool
