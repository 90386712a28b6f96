// SPDX-License-Identifier: Apache-2.0
//
// The plan for profiles without tables: curves, one matrix, curves, and no grid.
#pragma once

#include <memory>

#include "convert/plan.h"
#include "convert/stages.h"

namespace lumoxa::engine {

/// The plan of a list of stages between samples, where it is curves, a matrix and curves or a part
/// of that; null otherwise. Its results are at most 1 of 255 or 8 of 65535 from those of the
/// stages.
///
/// @param general  converts floating-point samples
std::shared_ptr<const Plan> makeShaperPlan(const StageList& samplesToSamples, int inputs,
                                           int outputs, std::shared_ptr<const Plan> general);

}  // namespace lumoxa::engine
