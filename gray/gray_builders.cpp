// SPDX-License-Identifier: Apache-2.0
#include "gray/gray_builders.h"

namespace lumoxa {
namespace {

using namespace gray_layout;

constexpr uint32_t kTripleBytes = 12;
constexpr float kFixedStep = 1.5258789e-5f;  // 1 / 65536

struct TagCounts {
    int n, steps, layout;
    uint64_t triples;

    explicit TagCounts(const TagCopy& tag)
        : n(loadFileOrder<uint16_t>(tag.data() + kGridSize)),
          steps(tag.data()[kSteps]),
          layout(tag.data()[kLayoutFlag]),
          triples(grayTriples(static_cast<uint64_t>(n), static_cast<uint64_t>(steps), layout)) {}
};

/// Reads the tag, checks it, and puts it with its samples into `state`.
int readGrayTag(const icProfileInternal& profile, GrayConv_t& state) {
    TagCopy tag;
    if (const int code = readTag(profile, kGrayTag, tag, kSamples)) return code;
    const TagCounts counts(tag);
    if (!possibleGrayCounts(counts.n, counts.steps, counts.layout)) return icErrTagType;
    if (kSamples + kTripleBytes * counts.triples > tag.size) return icErrRead;
    auto samples = requireZeroed<float>(static_cast<size_t>(counts.triples) * 3 * sizeof(float));
    for (size_t i = 0; i < counts.triples * 3; ++i) {
        const auto fixed = loadFileOrder<uint32_t>(tag.data() + kSamples + 4 * i);
        samples.get()[i] = static_cast<float>(fixed) * kFixedStep;
    }
    if (!canFitGray(counts.n, counts.steps, counts.layout, samples.get())) return icErrTagType;
    state.samples = samples.release();
    state.layoutFlag = static_cast<uint32_t>(counts.layout);
    tag.data()[kLayoutFlag] = 0;
    swapInPlace<uint16_t>(tag.data() + kGridSize, 1);
    state.tagData = reinterpret_cast<uint8_t*>(tag.bytes.release());
    return icSuccess;
}

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
