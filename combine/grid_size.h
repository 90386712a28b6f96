// SPDX-License-Identifier: Apache-2.0
//
// How many grid points the result of a combination has.
#pragma once

#include "combine/chain.h"

namespace lumoxa {

struct GridSize {
    int points = 0;  // a dimension; always odd, so that the neutral axis of Lab has a node
    bool identityInput = true;  // input tables stay ramps; else they carry the first stage's curves
    bool pentahedral = false;   // a four-input grid small enough for a pentahedral state
};

GridSize chooseGridSize(const ExpandedChain& chain);

}  // namespace lumoxa
