// SPDX-License-Identifier: Apache-2.0
#include "eval/table_stage.h"

#include <algorithm>

#include "eval/kernel.h"

namespace lumoxa {

std::unique_ptr<Flare_t> makeTableStage(uint32_t channels, const uint16_t* tables) {
    auto state = std::make_unique<Flare_t>();
    state->channels = channels;
    state->block = std::make_unique<uint16_t[]>(channels * kStageTableSize);
    std::copy_n(tables, channels * kStageTableSize, state->block.get());
    for (uint32_t c = 0; c < channels; ++c) {
        state->tables.push_back(state->block.get() + c * kStageTableSize);
    }
    return state;
}

void convertThroughTables(const void* state, const void* source, void* destination, int pixels,
                          CurveMask) {
    const auto& s = *static_cast<const Flare_t*>(state);
    const auto* in = static_cast<const uint16_t*>(source);
    auto* out = static_cast<uint16_t*>(destination);
    for (int i = 0; i < pixels; ++i) {
        for (uint32_t c = 0; c < s.channels; ++c)
            *out++ = s.tables[c][*in++];
    }
}

}  // namespace lumoxa
