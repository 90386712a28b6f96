// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa link`: a chain of profiles combined and saved as a device-link profile.
#pragma once

#include <string>
#include <vector>

#include "tools/conversion_request.h"
#include "tools/option_values.h"

namespace lumoxa_tool {

struct LinkArguments : NewProfile {
    std::vector<std::string> profiles;
    ConversionRequest request;
    lumoxa::Sample precision = lumoxa::Sample::U16;  ///< of the table
};

/// Combines, saves and reports. @throws UsageError, InputError, Interrupted
void runLink(const LinkArguments& arguments);

}  // namespace lumoxa_tool
