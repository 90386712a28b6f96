// SPDX-License-Identifier: Apache-2.0
//
// Tone curves by name, by gamma or out of a text file.
#pragma once

#include <string>

#include "lumoxa/lumoxa.hpp"

namespace lumoxa_tool {

/// The curve of "srgb", of "gamma:G", or of a text file: an output from 0 to 1 a line for evenly
/// spaced inputs. Whether a gamma is possible is for the library to say.
/// @throws UsageError for a gamma that is no number, InputError for a faulty file
lumoxa::ToneCurve displayCurve(const std::string& word);

}  // namespace lumoxa_tool
