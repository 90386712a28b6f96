// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa values`: converts single colours, for scripts.
#pragma once

#include <string>
#include <vector>

#include "tools/conversion_request.h"

namespace lumoxa_tool {

struct ValuesArguments {
    std::string from;
    std::string to;
    std::string link;  ///< a device link in place of the two; empty: none
    ConversionRequest request;
    bool sixteenBits = false;
    std::vector<std::string> values;  ///< "255,0,0"; none: lines of the standard input
};

/// Prints one converted colour a line, computed stage by stage: no table has to be built first, and
/// none stands between the colour and the answer.
/// @throws UsageError for a value with a wrong count or range, InputError for a profile
void runValues(const ValuesArguments& arguments);

}  // namespace lumoxa_tool
