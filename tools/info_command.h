// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa info`: what a profile holds, which conversions it offers and what in it breaks ICC.1.
#pragma once

#include <string>

namespace lumoxa_tool {

struct InfoArguments {
    std::string profile;
    bool json = false;
};

/// Prints what can be read of a profile, however broken.
/// @throws InputError for a file that can't be read, and after printing for one that the library
///         refuses or that has a tag that makes no transform
void runInfo(const InfoArguments& arguments);

}  // namespace lumoxa_tool
