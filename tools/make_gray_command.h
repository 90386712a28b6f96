// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa make-gray`: the profile of a gray device of three channels out of measured patches.
#pragma once

#include <string>

#include "tools/option_values.h"

namespace lumoxa_tool {

struct MakeGrayArguments : NewProfile {
    std::string patches;
    double range = 65535;  ///< device value of full ink
};

CLI::App* addMakeGray(CLI::App& app, MakeGrayArguments& arguments);

/// Makes, saves and reports how neutral prints will be. @throws UsageError, InputError, Interrupted
void runMakeGray(const MakeGrayArguments& arguments);

}  // namespace lumoxa_tool
