// SPDX-License-Identifier: Apache-2.0
//
// Input and output tables of a combination: the curves of the chain's end stages, which are then
// switched off while the grid is sampled, and the black of displays at either end.
#pragma once

#include <memory>

#include "combine/lut16.h"
#include "lumoxa/evaluate.h"
#include "lumoxa/gray.h"
#include "xform/xform_object.h"

namespace lumoxa {

/// Fills the input tables with the first stage's input curves, where it has some to give.
void fillInputTables(const icXformInternal& first, const Lut16View& lut);

/// Fills the output tables with the last stage's output curves, or with ramps.
void fillOutputTables(const icXformInternal& last, const Lut16View& lut);

/// Lifts the input of an RGB display by 1/24 of its range.
void liftDisplayBlack(const icXformInternal& first, const Lut16View& lut);

/// Lowers the output to an RGB display by 1/24 of its range, unless the chain starts in Lab.
void removeDisplayBlack(const icXformInternal& first, const icXformInternal& last,
                        const Lut16View& lut);

/// A stage of which some curves are switched off: a copy of the record that leads to a copy of its
/// state. Tables are shared with the stage, which must outlive it and is never written.
class StageWithoutCurves {
  public:
    explicit StageWithoutCurves(const icXformInternal& stage);

    void switchOffInputCurves();   // those that fillInputTables() carries over
    void switchOffOutputCurves();  // those that fillOutputTables() carries over
    const icXformInternal& record() const { return record_; }

    StageWithoutCurves(const StageWithoutCurves&) = delete;
    StageWithoutCurves& operator=(const StageWithoutCurves&) = delete;

  private:
    icLutState_t* lut();

    icXformInternal record_;
    trcMatrix_t matrix_{};
    GrayConv_t gray_{};
    std::unique_ptr<icLutState_t> plain_;
    std::unique_ptr<icLutTetraState_t> tetra_;
    std::unique_ptr<icLutPentaState_t> penta_;
};

}  // namespace lumoxa
