// SPDX-License-Identifier: Apache-2.0
//
// What the tool does with images, in a module of its own; a tool that is built without libvips has
// none.
#pragma once

#include <string>

#include "tools/conversion_request.h"

namespace lumoxa_tool {

/// `lumoxa convert` as the command line has it.
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

#if defined(LUMOXA_TOOL_MODULE)
/// Entry of the module. It prints its own messages, and no exception leaves it.
/// @return an exit code
extern "C" __attribute__((visibility("default"))) int lumoxaConvertImage(
    const ConvertArguments* arguments);
#endif

/// `lumoxa convert`.
/// @return an exit code
/// @throws InputError when the module is not there, UsageError when the tool was built without it
int convertImage(const ConvertArguments& arguments);

}  // namespace lumoxa_tool
