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
    if (state == nullptr || state->tagData == nullptr || state->samples == nullptr) return false;
    const float* const curves[] = {state->curveX, state->outCurveA, state->outCurveB,
                                   state->curveL, state->inCurveA,  state->inCurveB};
    return std::find(std::begin(curves), std::end(curves), nullptr) == std::end(curves);
}

/// The three tables of one direction, in one block.
struct GrayTables {
    uint16_t*& first;
    uint16_t*& second;
    uint16_t*& third;
    uint32_t entries;
};

/// Makes room for the tables if there is none, fits the curves if the tone is another one than the
/// state was built for, and says whether there is anything to build.
///
/// The state goes on to name the tone of its first build, deliberately: tables for any other tone
/// are made anew at each call, even for the tone of the call before.
inline bool prepareTables(GrayConv_t& state, const GrayTables& tables, const ToneRequest& request) {
    const bool sameTone = request.pair == TonePair{state.keyFirst, state.keySecond};
    if (tables.first != nullptr && sameTone) return false;
    if (tables.first == nullptr) {
        const size_t entries = tables.entries;
        tables.first = requireZeroed<uint16_t>(3 * entries * sizeof(uint16_t)).release();
        tables.second = tables.first + entries;
        tables.third = tables.second + entries;
    }
    if (!sameTone) refitToneCurves(state, request);
    return true;
}

/// The sample of a device value or an encoded Lab value.
inline uint16_t tableEntry(float value) {
    return roundClipped<uint16_t>(value);
}

}  // namespace lumoxa
