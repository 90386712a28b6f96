// SPDX-License-Identifier: Apache-2.0
//
// Input and output tables of a combination: the curves of the chain's end stages, which are masked
// while the grid is sampled, and the black of displays at either end.
#pragma once

#include "combine/lut16.h"
#include "xform/xform_object.h"

namespace lumoxa {

/// Fills the input tables with the first stage's input curves, where it has some to give.
void fillInputTables(const icXformInternal& first, const Lut16View& lut);

/// Fills the output tables with the last stage's output curves, or with ramps.
void fillOutputTables(const icXformInternal& last, const Lut16View& lut);

/// Lifts the input of an RGB display by 1/24 of its range.
void liftDisplayBlack(const icXformInternal& first, const Lut16View& lut);

/// Lowers the output to an RGB display by 1/24 of its range, unless the chain starts in Lab.
void removeDisplayBlack(const icXformInternal& first, const icXformInternal& last,
                        const Lut16View& lut);

}  // namespace lumoxa
