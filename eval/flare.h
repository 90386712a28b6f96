// SPDX-License-Identifier: Apache-2.0
//
// A stage of one full 16-bit table a channel, as display flare is modelled: any per-channel
// function without interpolation.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

namespace lumoxa {

inline constexpr size_t kFlareTableSize = 65536;

struct Flare_t {
    int32_t refCount = 0;
    uint32_t channels = 0;
    std::vector<const uint16_t*> tables;  // kFlareTableSize entries each
    std::unique_ptr<uint16_t[]> block;
};

/// Makes a flare state without holders from the tables of all channels, one after the other. Throws
/// std::bad_alloc.
std::unique_ptr<Flare_t> makeFlare(uint32_t channels, const uint16_t* tables);

/// destination sample = its channel's table at the source sample, over all cores.
void convertFlare(const void* state, const void* source, void* destination, int pixels);

}  // namespace lumoxa
