// SPDX-License-Identifier: Apache-2.0
//
// A stage of one full 16-bit table a channel, kind 'Flar': any function of single channels, such as
// the flare of a display, without interpolation.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "lut/curve_mask.h"

namespace lumoxa {

inline constexpr size_t kStageTableSize = 65536;

/// The tables of such a stage, whatever they model.
struct Flare_t {
    int32_t refCount = 0;
    uint32_t channels = 0;
    std::vector<const uint16_t*> tables;  // kStageTableSize entries each
    std::unique_ptr<uint16_t[]> block;
};

/// Makes a state from the tables of all channels, one after the other. Throws std::bad_alloc.
std::unique_ptr<Flare_t> makeTableStage(uint32_t channels, const uint16_t* tables);

/// destination sample = its channel's table at the source sample, over all cores. `state` is a
/// Flare_t.
void convertThroughTables(const void* state, const void* source, void* destination, int pixels,
                          CurveMask = {});

}  // namespace lumoxa
