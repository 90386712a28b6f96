// SPDX-License-Identifier: Apache-2.0
//
// A caller's chain of transforms expanded into stages: conversions between the connection spaces
// and white scalings stand where neighbours need them.
#pragma once

#include <vector>

#include "xform/xform_object.h"

namespace lumoxa {

/// Whether there is at least one transform, and no null among them.
bool isChain(int count, const icXform_t* chain);

/// Whether neighbours fit; if not, stores the index of the second of the first pair that does not.
bool stagesFit(int count, const icXform_t* chain, int* failingLink);

/// The stages of a chain, and the two figures about the caller's transforms that size its grid.
struct ExpandedChain {
    std::vector<const icXformInternal*> stages;
    std::vector<XformPtr> inserted;  // those of `stages` that the chain owns
    uint32_t maxGrid = 0;
    uint32_t maxChannels = 0;

    const icXformInternal& first() const { return *stages.front(); }
    const icXformInternal& last() const { return *stages.back(); }
};

/// Throws std::bad_alloc.
ExpandedChain expandChain(int count, const icXform_t* chain);

}  // namespace lumoxa
