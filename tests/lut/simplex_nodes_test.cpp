// SPDX-License-Identifier: Apache-2.0
//
// The nodes that simplex interpolation reads: what a grid becomes, and the memory it may take.
#include "lut/simplex_nodes.h"

#include <new>

#include <gtest/gtest.h>

namespace lumoxa {
namespace {

icLutState_t gridOf(int inputs, int points, int outputs) {
    icLutState_t state;
    state.inChannels = inputs;
    state.outChannels = outputs;
    std::fill_n(state.lastCell, inputs, points - 2);
    return state;
}

TEST(SimplexNodes, KeepTheEntriesAndFillUpTheLastGroup) {
    const uint16_t entries[] = {65535, 1,  2,  3,  4,  40000, 6, 7, 8, 9, 10, 11, 12, 13,
                                14,    15, 16, 0,  1,  2,     3, 4, 5, 6, 7,  8,  9,  10,
                                11,    12, 13, 14, 15, 0,     1, 2, 3, 4, 5,  6};
    icLutState_t state = gridOf(3, 2, 5);
    state.clut16 = entries;
    const auto nodes = packNodes(state);
    for (int node = 0; node < 8; ++node) {
        for (int o = 0; o < 8; ++o)
            EXPECT_EQ(nodes[node * 8 + o], o < 5 ? entries[node * 5 + o] : 0) << node << " " << o;
    }
}

TEST(SimplexNodes, AreRefusedBeyondTheirBoundBeforeAnyIsRead) {
    const uint8_t entry = 0;
    for (const icLutState_t& shape : {gridOf(3, 255, 68), gridOf(4, 129, 1), gridOf(4, 255, 255)}) {
        icLutState_t state = shape;
        state.clut8 = &entry;
        EXPECT_THROW(packNodes(state), std::bad_alloc);
    }
}

}  // namespace
}  // namespace lumoxa
