// SPDX-License-Identifier: Apache-2.0
//
// Progress of writing an image, and the place where an interrupt stops it.
#pragma once

#include <vips/vips.h>

namespace lumoxa_tool {

/// Follows `image` while it is written: draws a bar on the standard error stream when that is a
/// terminal and `quiet` is not set, and stops the writing once a signal has come.
void followProgress(VipsImage* image, bool quiet);

}  // namespace lumoxa_tool
