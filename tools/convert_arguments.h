// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa convert` as the command line has it.
#pragma once

#include <string>

#include "tools/conversion_request.h"

namespace lumoxa_tool {

struct ConvertArguments {
    std::string input;
    std::string output;
    std::string from;  ///< for images without a profile; empty: none given
    std::string to;    ///< with a link: only to be embedded; empty: nothing is
    std::string link;  ///< a device link that converts instead of two profiles; empty: none
    ConversionRequest request;
    int depth = 0;  ///< 8 or 16; 0: as the input
    bool quiet = false;
};

}  // namespace lumoxa_tool
