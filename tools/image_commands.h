// SPDX-License-Identifier: Apache-2.0
//
// What the tool does with images: in a module of its own where modules can be loaded, else in the
// program.
#pragma once

#include "tools/convert_arguments.h"

#if defined(LUMOXA_TOOL_MODULE)
#define LUMOXA_TOOL_ENTRY __attribute__((visibility("default")))
#else
#define LUMOXA_TOOL_ENTRY
#endif

extern "C" {

/// Entry of the module. It prints its own messages, and no exception leaves it.
/// @return an exit code
LUMOXA_TOOL_ENTRY int lumoxaConvertImage(const lumoxa_tool::ConvertArguments* arguments);
}

namespace lumoxa_tool {

/// `lumoxa convert`. @return an exit code @throws InputError when the module is not there
int convertImage(const ConvertArguments& arguments);

}  // namespace lumoxa_tool
