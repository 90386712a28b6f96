// SPDX-License-Identifier: Apache-2.0
//
// From a chain of transforms to one table, the same for a conversion and for the device link that
// stores it.
#pragma once

#include <string>
#include <vector>

#include "tools/chain_link.h"
#include "tools/tabulated.h"

namespace lumoxa_tool {

struct ConversionRequest {
    icRenderingIntent intent = icRelativeColorimetric;
    bool displayFlare = false;  ///< black of RGB displays is lifted and lowered by their flare
    bool combine = false;       ///< one table, even where two transforms in turn are more exact
    GrayToneOptions tone;       ///< for a target that is a gray device of three channels
};

/// What the colours between the points of a grid are computed from.
enum class Interpolation { kMultilinear, kTetrahedral, kPentahedral };

/// A conversion in one table.
struct Table {
    XformHandle xform;
    icXformDesc_t desc = {};
    int grid = 0;
    Interpolation interpolation = Interpolation::kMultilinear;
    std::string describe() const;
};

/// Whether no transform of a chain has a grid.
bool withoutGrid(const std::vector<ChainLink>& chain);

/// Whether two links meet in three channels of a connection space.
bool meetInConnectionSpace(const ChainLink& left, const ChainLink& right);

/// @throws InputError when the links don't fit, Interrupted on the user's wish, std::bad_alloc
Table combineChain(const std::vector<ChainLink>& chain, const ConversionRequest& request);

/// The table that a device link stores, shared with `link`.
Table tableOfLink(const ChainLink& link);

/// A table at another precision. At 8 bits it has 33 grid points for three inputs, 17 for four, 255
/// for one, and for others its own.
/// @throws Interrupted, std::bad_alloc
Table withPrecision(Table table, Precision precision);

}  // namespace lumoxa_tool
