// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa info`: what a profile holds and which conversions it offers.
#pragma once

#include <string>

namespace lumoxa_tool {

/// Prints header, tags and transforms.
/// @throws InputError for a file that is not a profile, and after printing for one with a tag that
///         makes no transform
void runInfo(const std::string& path);

}  // namespace lumoxa_tool
