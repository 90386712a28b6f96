// SPDX-License-Identifier: Apache-2.0
//
// `lumoxa convert`: one image file into another, from device to device.
#pragma once

#include "tools/convert_arguments.h"

namespace lumoxa_tool {

/// Converts and reports. libvips has to be running. @throws UsageError, InputError, Interrupted
void runConvert(const ConvertArguments& arguments);

}  // namespace lumoxa_tool
