// SPDX-License-Identifier: Apache-2.0
//
// What the tool does with images, in a module of its own; a tool that is built without libvips has
// none.
#pragma once

#include "tools/convert_arguments.h"

#if defined(LUMOXA_TOOL_MODULE)
/// Entry of the module. It prints its own messages, and no exception leaves it.
/// @return an exit code
extern "C" __attribute__((visibility("default"))) int lumoxaConvertImage(
    const lumoxa_tool::ConvertArguments* arguments);
#endif

namespace lumoxa_tool {

/// `lumoxa convert`.
/// @return an exit code
/// @throws InputError when the module is not there, UsageError when the tool was built without it
int convertImage(const ConvertArguments& arguments);

}  // namespace lumoxa_tool
