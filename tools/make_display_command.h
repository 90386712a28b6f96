// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa make-display`: a display profile out of chromaticities and a tone curve.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace lumoxa_tool {

struct MakeDisplayArguments {
    std::vector<std::string> primaries;  ///< rx,ry,gx,gy,bx,by in one word or three
    std::string white;                   ///< x,y
    std::string curve;                   ///< as displayCurve takes it
    std::string output;
    std::optional<std::string> description, copyright;
    bool quiet = false;
};

CLI::App* addMakeDisplay(CLI::App& app, MakeDisplayArguments& arguments);

/// Makes, saves and reports. @throws UsageError, InputError, Interrupted
void runMakeDisplay(const MakeDisplayArguments& arguments);

}  // namespace lumoxa_tool
