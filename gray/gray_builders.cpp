// SPDX-License-Identifier: Apache-2.0
#include "gray/gray_builders.h"

#include "gray/in_tables.h"

namespace lumoxa {
namespace {

/// Makes room for the six curves and fits them.
void buildCurves(GrayConv_t& state, const ToneRequest& tone) {
    const auto points = static_cast<size_t>(graySteps(state)) + 2;
    state.curveX = requireZeroed<float>(6 * points * sizeof(float)).release();
    float* at = state.curveX;
    for (float** curve :
         {&state.outCurveA, &state.outCurveB, &state.curveL, &state.inCurveA, &state.inCurveB}) {
        at += points;
        *curve = at;
    }
    state.keyFirst = tone.pair.a;
    state.keySecond = tone.pair.b;
    refitToneCurves(state, tone);
}

}  // namespace

int buildGrayState(const icProfileInternal& profile, icTransType direction,
                   icRenderingIntent intent, const GrayRequest& request, GrayStatePtr& out) {
    GrayStatePtr state(requireZeroed<GrayConv_t>(sizeof(GrayConv_t)).release());
    if (const int code = readGrayTag(profile, *state)) return code;
    buildCurves(*state, request.tone);
    const uint32_t device = profile.header.colorSpace;
    const uint32_t pcs = profile.header.pcs;
    if (direction == icDeviceToPcs) {
        state->inSpace = device;
        state->outSpace = pcs;
        state->inEntries = kInEntries;
        buildInTables(*state, request.tone);
    } else {
        state->inSpace = pcs;
        state->outSpace = device;
        state->outEntries = kOutEntries;
        if (request.toneCurve != nullptr) {
            buildOutTables(*state, request.tone, request.toneCurve);
        } else {
            buildOutTables(
                *state, request.tone,
                Tonality{intent == icPerceptual, request.shaped, request.shapingParameter});
        }
    }
    state->built = 1;
    out = std::move(state);
    return icSuccess;
}

}  // namespace lumoxa
