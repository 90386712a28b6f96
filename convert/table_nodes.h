// SPDX-License-Identifier: Apache-2.0
//
// The nodes of a grid, computed by stages: all of them, or those that some colours need.
#pragma once

#include <cstdint>
#include <vector>

#include "convert/table_shape.h"

namespace lumoxa::engine {

/// All nodes of a grid with equally many points a channel, the last channel fastest, on all cores.
std::vector<uint16_t> sampleNodes(const StageList& tail, int inputs, int outputs, int points);

/// What a table would answer for a set of colours, from the nodes around each of them alone.
std::vector<uint16_t> previewTable(const Shape& shape, int inputs, int outputs,
                                   const std::vector<uint16_t>& samples, int points);

}  // namespace lumoxa::engine
