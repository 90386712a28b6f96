// SPDX-License-Identifier: Apache-2.0
//
// The ways to divide a list of stages into curves, a grid and curves.
#pragma once

#include <string>
#include <vector>

#include "convert/stages.h"

namespace lumoxa::engine {

using Tables = std::vector<std::vector<uint16_t>>;

/// The curves around a grid, and the stages that its nodes are computed by.
struct Shape {
    Tables inTables, outTables;
    StageList tail;  // from positions in the grid, 0..1, to its values
    std::string what;
};

/// Every shape that suits a list of stages between samples; the first has no curves.
std::vector<Shape> shapesOf(const StageList& list);

/// Stages `from` to before `to`.
StageList slice(const StageList& list, size_t from, size_t to);

/// The stage at a place if it is of that kind, else null.
template <class Kind>
const Kind* stageAt(const StageList& list, size_t i) {
    return i < list.stages().size() ? dynamic_cast<const Kind*>(list.stages()[i].stage.get())
                                    : nullptr;
}

}  // namespace lumoxa::engine
