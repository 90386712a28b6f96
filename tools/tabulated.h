// SPDX-License-Identifier: Apache-2.0
//
// A transform sampled into a LUT tag.
#pragma once

#include "tools/xform_handle.h"

namespace lumoxa_tool {

/// Bits of the numbers in a LUT tag.
enum class Precision { k8, k16 };

/// Samples a transform between devices on a grid and makes the transform of the lut8 or lut16 tag
/// that holds the samples, between curves that change nothing.
///
/// @param grid  points of every input, 2..255
/// @throws InputError, std::bad_alloc, Interrupted
XformHandle tabulate(icXform_t xform, const icXformDesc_t& desc, int grid, Precision precision);

}  // namespace lumoxa_tool
