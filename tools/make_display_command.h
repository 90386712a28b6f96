// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa make-display`: a display profile out of chromaticities and a tone curve.
#pragma once

#include <string>
#include <vector>

#include "tools/option_values.h"

namespace lumoxa_tool {

struct MakeDisplayArguments : NewProfile {
    std::vector<std::string> primaries;  ///< rx,ry,gx,gy,bx,by in one word or three
    std::string white;                   ///< x,y
    std::string curve;                   ///< srgb, gamma:G or a file
};

CLI::App* addMakeDisplay(CLI::App& app, MakeDisplayArguments& arguments);

/// Makes, saves and reports. @throws UsageError, InputError, Interrupted
void runMakeDisplay(const MakeDisplayArguments& arguments);

}  // namespace lumoxa_tool
