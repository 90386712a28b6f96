// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa link`: a chain of profiles combined and saved as a device-link profile.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "tools/conversion_request.h"

namespace lumoxa_tool {

struct LinkArguments {
    std::vector<std::string> profiles;
    std::string output;
    ConversionRequest request;
    lumoxa::Sample precision = lumoxa::Sample::U16;  ///< of the table
    std::optional<std::string> description;          ///< else from the profiles
    std::optional<std::string> copyright;            ///< else free
    bool quiet = false;
};

/// Combines, saves and reports. @throws UsageError, InputError, Interrupted
void runLink(const LinkArguments& arguments);

}  // namespace lumoxa_tool
