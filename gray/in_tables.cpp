// SPDX-License-Identifier: Apache-2.0
#include "gray/in_tables.h"

#include "gray/gray_tables.h"
#include "profile/entry_guard.h"

namespace lumoxa {

void buildInTables(GrayConv_t& state, const ToneRequest& request) {
    const GrayTables tables{state.inTable1, state.inTable2, state.inTable3, state.inEntries};
    if (!prepareTables(state, tables, request)) return;
    const int points = graySteps(state) + 2;
    const float x0 = state.curveX[0];
    const float range = state.curveX[points - 1] - x0;
    const auto last = static_cast<float>(state.inEntries - 1);
    const auto sample = [&](const float* curve, uint16_t* table) {
        const Spline spline(state.curveX, curve, points);
        for (uint32_t i = 0; i < state.inEntries; ++i) {
            table[i] = tableEntry(spline(x0 + static_cast<float>(i) * range / last));
        }
    };
    sample(state.curveL, tables.first);
    sample(state.inCurveA, tables.second);
    sample(state.inCurveB, tables.third);
}

}  // namespace lumoxa

int icBuildGrayInLuts(GrayConv_t* state, icRenderingIntent, const unsigned short* pair,
                      float parameter) {
    using namespace lumoxa;
    if (!hasCurves(state) || state->inEntries < 2) return icErrInvalid;
    return guarded([&] {
        buildInTables(*state, {tonePair(pair), parameter, {}});
        return icSuccess;
    });
}
