// SPDX-License-Identifier: Apache-2.0
//
// A stage of a chain that changes no colour but has a grid, after which the library sizes the grid
// of the whole chain.
#pragma once

#include "tools/xform_handle.h"

namespace lumoxa_tool {

/// Grid points that a stage needs for a chain with so many inputs.
int gridOfStage(uint32_t inputs);

/// The stage, from XYZ to XYZ: what is coded in 16 bits passes unchanged.
///
/// @param grid    its points, even: the middle of 65535 steps would be no whole number
/// @param intent  of the chain, so that absolute colours pass it as such
/// @throws std::bad_alloc
XformHandle makeGridStage(int grid, icRenderingIntent intent);

}  // namespace lumoxa_tool
