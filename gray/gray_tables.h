// SPDX-License-Identifier: Apache-2.0
//
// What in tables and out tables have in common: when they are built, and of which curves.
#pragma once

#include <algorithm>

#include "gray/pre_luts.h"
#include "gray/spline.h"

namespace lumoxa {

/// Whether a state has all that tables are built from.
inline bool hasCurves(const GrayConv_t* state) {
    if (state == nullptr || state->tagData == nullptr) return false;
    const float* const curves[] = {state->curveX, state->outCurveA, state->outCurveB,
                                   state->curveL, state->inCurveA,  state->inCurveB};
    return std::find(std::begin(curves), std::end(curves), nullptr) == std::end(curves) &&
           state->layoutFlag <= gray_layout::kMostLayout &&
           canFitGray(grayGridSize(*state), graySteps(*state), static_cast<int>(state->layoutFlag),
                      state->samples);
}

/// The three tables of one direction, in one block.
struct GrayTables {
    uint16_t*& first;
    uint16_t*& second;
    uint16_t*& third;
    uint32_t entries;
};

/// One build of tables. It makes room for them if there is none and fits the curves if the tone is
/// another one than the state was built for. Unless it is finished, the state is left without the
/// tables.
///
/// The state goes on to name the tone of its first build, deliberately: tables for any other tone
/// are made anew at each call, even for the tone of the call before.
class TableBuild {
  public:
    /// Throws std::bad_alloc.
    TableBuild(GrayConv_t& state, const GrayTables& tables, const ToneRequest& request)
        : tables_(tables), block_(tables.first) {
        const bool sameTone = request.pair == TonePair{state.keyFirst, state.keySecond};
        needed_ = block_ == nullptr || !sameTone;
        if (!needed_) {
            finish();
            return;
        }
        tables_.first = tables_.second = tables_.third = nullptr;
        if (block_ == nullptr) {
            block_ = requireZeroed<uint16_t>(size_t{3} * tables.entries * sizeof(uint16_t));
        }
        if (!sameTone) refitToneCurves(state, request);
    }

    /// Whether there is anything to build.
    bool needed() const { return needed_; }
    std::span<uint16_t> table(size_t i) const {
        return {block_.get() + i * tables_.entries, tables_.entries};
    }
    void finish() {
        tables_.first = block_.release();
        tables_.second = tables_.first + tables_.entries;
        tables_.third = tables_.second + tables_.entries;
    }

  private:
    GrayTables tables_;
    CHeapPtr<uint16_t> block_;
    bool needed_ = false;
};

/// The sample of a device value or an encoded Lab value.
inline uint16_t tableEntry(float value) {
    return roundClipped<uint16_t>(value);
}

}  // namespace lumoxa
