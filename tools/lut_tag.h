// SPDX-License-Identifier: Apache-2.0
//
// What a report says of a profile's LUT tag, read from the tag itself.
#pragma once

#include <string>

#include "tools/profile_source.h"

namespace lumoxa_tool {

/// Grid points of a LUT tag, the most of any input; 0 for a tag without a grid.
int gridPoints(const Tag& lut);

/// The stages of a LUT tag that a conversion leaves out although they do something ("matrix",
/// "M curves", "matrix and M curves"); empty when nothing is lost.
///
/// The interpolation kernels are made for the lut16 order of stages: matrix and curves in front of
/// the grid. So a lutAtoB tag, whose matrix and M curves come after it, loses both, and a lutBtoA
/// tag without A curves loses its M curves.
std::string stagesLeftOut(const Tag& lut);

}  // namespace lumoxa_tool
