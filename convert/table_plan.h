// SPDX-License-Identifier: Apache-2.0
//
// The plan for conversions that need a grid: curves, a grid of three or four inputs, curves. Its
// numbers are those of a lut16 tag, so that a device link holds them as they are.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "convert/grid_stage.h"
#include "convert/plan.h"
#include "convert/stages.h"

namespace lumoxa::engine {

/// Tables of 16-bit numbers between samples 0..65535 on either side.
struct TableForm {
    /// Equally many entries each, at least 2; none at all where samples are positions in the grid.
    std::vector<std::vector<uint16_t>> inCurves, outCurves;
    Grid grid;
};

/// What a list of stages between samples is where it already is curves, a grid and curves of 16-bit
/// numbers, as that of a device link; nothing otherwise.
std::optional<TableForm> tableFormOf(const StageList& samplesToSamples);

/// Whether the kernels serve a grid of so many inputs and outputs.
bool servesTable(int inputs, int outputs);

/// @param form     of a grid that servesTable()
/// @param general  converts floating-point samples, and lends its results to nothing else
std::shared_ptr<const Plan> makeTablePlan(const TableForm& form,
                                          std::shared_ptr<const Plan> general);

}  // namespace lumoxa::engine
