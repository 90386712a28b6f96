// SPDX-License-Identifier: Apache-2.0
//
// Interleaved pixels without gaps, and one transform applied to them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lumoxa/lumoxa.h"

namespace lumoxa_tool {

struct PackedPixels {
    void* memory;
    int32_t dataType;  ///< icSamples8 or icSamples16
};

/// Converts packed pixels with the channels that `desc` states.
/// @return a result code of the library
int evaluatePacked(icXform_t xform, const icXformDesc_t& desc, const PackedPixels& source,
                   const PackedPixels& target, size_t pixels);

}  // namespace lumoxa_tool
