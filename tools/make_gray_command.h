// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa make-gray`: the profile of a gray device of three channels out of measured patches.
#pragma once

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace lumoxa_tool {

struct MakeGrayArguments {
    std::string patches;
    std::string output;
    double range = 65535;  ///< device value of full ink
    std::optional<std::string> description, copyright;
    bool quiet = false;
};

CLI::App* addMakeGray(CLI::App& app, MakeGrayArguments& arguments);

/// Makes, saves and reports how neutral prints will be. @throws UsageError, InputError, Interrupted
void runMakeGray(const MakeGrayArguments& arguments);

}  // namespace lumoxa_tool
