// SPDX-License-Identifier: Apache-2.0
#include "eval/flare.h"

#include <algorithm>

#include "eval/kernel.h"

namespace lumoxa {
namespace {

void flare(const Flare_t& s, const uint16_t* source, uint16_t* destination, ptrdiff_t pixels) {
    for (ptrdiff_t i = 0; i < pixels; ++i) {
        for (uint32_t c = 0; c < s.channels; ++c)
            *destination++ = s.tables[c][*source++];
    }
}

}  // namespace

std::unique_ptr<Flare_t> makeFlare(uint32_t channels, const uint16_t* tables) {
    auto state = std::make_unique<Flare_t>();
    state->channels = channels;
    state->block = std::make_unique<uint16_t[]>(channels * kFlareTableSize);
    std::copy_n(tables, channels * kFlareTableSize, state->block.get());
    for (uint32_t c = 0; c < channels; ++c) {
        state->tables.push_back(state->block.get() + c * kFlareTableSize);
    }
    return state;
}

void convertFlare(const void* state, const void* source, void* destination, int pixels) {
    const auto& s = *static_cast<const Flare_t*>(state);
    runOnAllCores<Flare_t, flare>(s, static_cast<const uint16_t*>(source),
                                  static_cast<uint16_t*>(destination), pixels, s.channels,
                                  s.channels);
}

}  // namespace lumoxa
