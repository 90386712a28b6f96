// SPDX-License-Identifier: Apache-2.0
#include "gray/in_tables.h"

#include "gray/gray_tables.h"
#include "profile/entry_guard.h"

namespace lumoxa {

void buildInTables(GrayConv_t& state, const ToneRequest& request) {
    TableBuild build(state, {state.inTable1, state.inTable2, state.inTable3, state.inEntries},
                     request);
    if (!build.needed()) return;
    const int points = graySteps(state) + 2;
    const float x0 = state.curveX[0];
    const float range = state.curveX[points - 1] - x0;
    const auto last = static_cast<float>(state.inEntries - 1);
    const auto sample = [&](const float* curve, std::span<uint16_t> table) {
        const Spline spline(state.curveX, curve, points);
        for (size_t i = 0; i < table.size(); ++i)
            table[i] = tableEntry(spline(x0 + static_cast<float>(i) * range / last));
    };
    sample(state.curveL, build.table(0));
    sample(state.inCurveA, build.table(1));
    sample(state.inCurveB, build.table(2));
    build.finish();
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
