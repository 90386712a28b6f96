// SPDX-License-Identifier: Apache-2.0
//
// From exact stages to a table: which curves stand around its grid, how many points it has, and how
// far it is from the stages.
#pragma once

#include <string>

#include "convert/chain.h"
#include "convert/error_measure.h"
#include "convert/table_plan.h"

namespace lumoxa::engine {

struct BuiltTable {
    TableForm form;
    std::shared_ptr<const Plan> plan;
    MeasuredError error;
    bool withinLimits = false;
    std::string curves;  ///< what stands around the grid, for reports
};

/// Builds the smallest table that keeps to the limits or, where none tried does, the largest one.
///
/// @param samplesToSamples  the chain's stages between samples 0..1 on either side
/// @param exact             the plan that the table is measured against
/// @throws std::bad_alloc
BuiltTable buildTable(const Chain& chain, const StageList& samplesToSamples,
                      const std::shared_ptr<const Plan>& exact);

/// How far a table of so many points is from the exact plan.
MeasuredError measured(const Chain& chain, const Plan& exact, const Plan& plan, int points);

/// The table of a chain with a grid of so many points, between curves that change nothing: what a
/// device link has where the conversion itself needs no table.
TableForm plainTable(const StageList& samplesToSamples, int inputs, int outputs, int points);

}  // namespace lumoxa::engine
