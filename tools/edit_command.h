// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa edit`: tags of a profile set and removed.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace lumoxa_tool {

struct EditArguments {
    std::string profile;
    std::string output;
    std::optional<std::string> description, copyright;
    std::vector<std::string> setTags;     ///< SIG=FILE
    std::vector<std::string> removeTags;  ///< SIG
    std::optional<std::string> white;     ///< X,Y,Z
    std::vector<std::string> curves;      ///< SIG=GAMMA
    bool quiet = false;
};

CLI::App* addEdit(CLI::App& app, EditArguments& arguments);

/// Edits, saves and reports. @throws UsageError, InputError, Interrupted
void runEdit(const EditArguments& arguments);

}  // namespace lumoxa_tool
