// SPDX-License-Identifier: Apache-2.0
//
// Tone curves by name, by gamma or out of a text file.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// A 'curv' tag of one gamma, rounded to u8Fixed8; nothing when that can't hold it.
std::optional<std::vector<uint8_t>> gammaTag(double gamma);

/// A 'curv' tag of "srgb", of "gamma:G", or of a text file: an output from 0 to 1 a line for
/// evenly spaced inputs.
/// @throws UsageError for an impossible gamma, InputError for a faulty file
std::vector<uint8_t> displayCurveTag(const std::string& word);

}  // namespace lumoxa_tool
