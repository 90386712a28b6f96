// SPDX-License-Identifier: Apache-2.0
//
// The nodes of a three- or four-input grid in the layout that simplex interpolation reads: 16
// bits a number, output after output, each node filled up to whole groups of outputs that are
// worked out together.
#pragma once

#include <cstdint>
#include <memory>

#include "lut/lut_state.h"

namespace lumoxa {

/// Bytes that a grid's nodes may take here: 2 GiB. The largest grids of real profiles (17 points,
/// four inputs and outputs) take 670 KB; what lies beyond the bound is a tag made to exhaust
/// memory. Within it, a node's place is a 32-bit number.
inline constexpr uint64_t kMaxNodeBytes = uint64_t{1} << 31;

/// Numbers that a node takes.
inline int paddedOutputs(int outputs) {
    return (outputs + kOutputGroup - 1) / kOutputGroup * kOutputGroup;
}

/// `nodes` nodes of `outputs` entries each, filled up. Throws std::bad_alloc.
std::shared_ptr<const uint16_t[]> packNodes(const uint16_t* entries, uint64_t nodes, int outputs);

/// The same of the state's grid, the last dimension fastest.
std::shared_ptr<const uint16_t[]> packNodes(const icLutState_t& state);

}  // namespace lumoxa
