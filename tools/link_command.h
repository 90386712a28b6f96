// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa link`: a chain of profiles combined and saved as a device-link profile.
#pragma once

#include <string>
#include <vector>

#include "tools/combined_chain.h"
#include "tools/link_profile.h"

namespace lumoxa_tool {

struct LinkArguments {
    std::vector<std::string> profiles;
    std::string output;
    ConversionRequest request;
    Precision precision = Precision::k16;
    LinkTexts texts = {{}, "No copyright, use freely"};  ///< no description: from the profiles
    bool quiet = false;
};

/// Combines, saves and reports. @throws UsageError, InputError, Interrupted
void runLink(const LinkArguments& arguments);

}  // namespace lumoxa_tool
