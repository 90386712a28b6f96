// SPDX-License-Identifier: Apache-2.0
//
// States of matrix/TRC transforms: a device described by tone curves and colorants (or by one curve
// for gray), in either direction.
#include <algorithm>
#include <array>
#include <memory>

#include "base/entry_guard.h"
#include "lumoxa/evaluate.h"
#include "xform/tone_curve.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

constexpr int kDefaultEntries = 4096;  // for identity, gamma and parametric curves

// From s15Fixed16 (1.0 = 65536) to a factor between device samples (1.0 = 65535) and XYZ samples
// (1.0 = 32768): 1 / 131070.
constexpr float kColorantScale = 7.629511e-06f;

constexpr icTagSignature kCurveTags[] = {fourcc("rTRC"), fourcc("gTRC"), fourcc("bTRC")};
constexpr icTagSignature kColorantTags[] = {fourcc("rXYZ"), fourcc("gXYZ"), fourcc("bXYZ")};
constexpr icTagSignature kGrayCurveTag = fourcc("kTRC");

/// The public record with the block that its curve pointers lead into.
struct TrcMatrixState : trcMatrix_t {
    std::unique_ptr<float[]> tables;
};

using Matrix = std::array<float, 9>;

int readColorants(const icProfileInternal& profile, Matrix& m) {
    for (size_t column = 0; column < 3; ++column) {
        std::array<int32_t, 3> xyz{};
        if (const int code = readXyz(profile, kColorantTags[column], xyz)) return code;
        for (size_t row = 0; row < 3; ++row) {
            m[3 * row + column] = static_cast<float>(xyz[row]) * kColorantScale;
        }
    }
    return icSuccess;
}

/// Adjugate over determinant; all zero for a singular matrix, which then maps all colours to the
/// start of the inverse curves.
Matrix inverted(const Matrix& m) {
    const float det = m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) +
                      m[2] * (m[3] * m[7] - m[4] * m[6]);
    if (det == 0.0f) return {};
    const float r = 1.0f / det;
    return {r * (m[4] * m[8] - m[5] * m[7]), r * (m[2] * m[7] - m[1] * m[8]),
            r * (m[1] * m[5] - m[2] * m[4]), r * (m[5] * m[6] - m[3] * m[8]),
            r * (m[0] * m[8] - m[2] * m[6]), r * (m[2] * m[3] - m[0] * m[5]),
            r * (m[3] * m[7] - m[4] * m[6]), r * (m[1] * m[6] - m[0] * m[7]),
            r * (m[0] * m[4] - m[1] * m[3])};
}

/// The exponent that inverts this channel's own gamma. The channel may be of another form than the
/// red one that chose this branch; without an entry it is the identity.
double inverseGamma(const SampledCurve& curve) {
    constexpr double kGammaOne = 256.0;  // u8Fixed8
    return curve.entries.empty() ? 1.0 : kGammaOne / curve.entries[0];
}

/// Fills the inverse table of one channel. The form of the first curve decides for all channels, on
/// the assumption that a profile's curves are of one form; parametric curves go their own way.
void sampleInverse(const SampledCurve& curve, const SampledCurve& first, int entries,
                   float* table) {
    const SampledCurve& form = first.parametric ? curve : first;
    if (!curve.parametric && form.entries.empty()) {
        sampleToneCurve(SampledCurve{}, entries, table);
    } else if (!curve.parametric && form.entries.size() == 1) {
        sampleGamma(inverseGamma(curve), entries, table);
    } else {
        const auto forward = std::make_unique<float[]>(static_cast<size_t>(entries));
        sampleToneCurve(curve, entries, forward.get());
        invertCurve(forward.get(), entries, table);
    }
}

/// Reads the profile's curves (one for gray) and makes a state with their tables, forward or
/// inverse.
int buildCurves(const icProfileInternal& profile, bool inverse,
                std::unique_ptr<TrcMatrixState>& out) {
    const bool gray = profile.header.colorSpace == kSpaceGray;
    const size_t channels = gray ? 1 : 3;
    std::array<SampledCurve, 3> curves;
    for (size_t c = 0; c < channels; ++c) {
        const icTagSignature tag = gray ? kGrayCurveTag : kCurveTags[c];
        if (const int code = readToneCurve(profile, tag, curves[c])) return code;
    }
    const int entries =
        curves[0].sampled() ? static_cast<int>(curves[0].entries.size()) : kDefaultEntries;
    auto state = std::make_unique<TrcMatrixState>();
    state->hasCurves = 1;
    state->curveEntries = entries;
    state->tables = std::make_unique<float[]>(channels * static_cast<size_t>(entries));
    for (size_t c = 0; c < channels; ++c) {
        float* table = state->tables.get() + c * static_cast<size_t>(entries);
        if (inverse) {
            sampleInverse(curves[c], curves[0], entries, table);
        } else {
            sampleToneCurve(curves[c], entries, table);
        }
        state->curves[c] = table;
    }
    out = std::move(state);
    return icSuccess;
}

int build(const icProfileInternal& profile, icXformInternal& xform, bool toDevice) {
    const icHeader& header = profile.header;
    const bool gray = header.colorSpace == kSpaceGray;
    std::unique_ptr<TrcMatrixState> state;
    if (const int code = buildCurves(profile, toDevice, state)) return code;
    if (gray) {
        // Only gray states name their spaces: that is how the kernels tell the one-channel form.
        state->inSpace = toDevice ? header.pcs : header.colorSpace;
        state->outSpace = toDevice ? header.colorSpace : header.pcs;
    } else {
        Matrix m{};
        if (const int code = readColorants(profile, m)) return code;
        const Matrix stored = toDevice ? inverted(m) : m;
        std::copy(stored.begin(), stored.end(), state->matrix);
    }
    const uint32_t deviceChannels = gray ? 1 : 3;
    const auto entries = static_cast<uint32_t>(state->curveEntries);
    xform.kind = toDevice ? kKindMatrixTrc : kKindTrcMatrix;
    xform.inChannels = toDevice ? 3 : deviceChannels;
    xform.outChannels = toDevice ? deviceChannels : 3;
    xform.gridPoints = 0;
    xform.inTableEntries = toDevice ? 0 : entries;
    xform.outTableEntries = toDevice ? entries : 0;
    xform.state = XformState(std::shared_ptr<const trcMatrix_t>(std::move(state)));
    return icSuccess;
}

int guardedBuild(icProfileInternal* profile, icXformInternal* xform, bool toDevice) {
    if (validProfile(profile) == nullptr || xform == nullptr) return icErrInvalid;
    return guarded([&] { return build(*profile, *xform, toDevice); });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icBuildTrcMatrixXform(icProfileInternal* profile, icXformInternal* xform, icRenderingIntent) {
    return guardedBuild(profile, xform, false);
}

int icBuildMatrixTrcXform(icProfileInternal* profile, icXformInternal* xform, icRenderingIntent) {
    return guardedBuild(profile, xform, true);
}
