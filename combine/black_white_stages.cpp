// SPDX-License-Identifier: Apache-2.0
//
// Stages between a perceptual rendering, whose L* runs from 0 to 100, and the range between the
// black and the white of a device, kinds 'PtoR' and 'RtoP'.
#include <algorithm>
#include <array>
#include <memory>

#include "base/entry_guard.h"
#include "base/pcs_encoding.h"
#include "base/power.h"
#include "eval/chain_kernels.h"
#include "lumoxa/combine.h"
#include "lumoxa/evaluate.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

constexpr uint32_t kMaxChannels = 16;

// The formulas of CIE 15 as in the tables of the XYZ-to-Lab stage, without tables for two pixels.
constexpr float kAPerF = 128000.0f;  // 500 x 256
constexpr float kBPerF = 51200.0f;   // 200 x 256

using LabPixel = std::array<uint16_t, 3>;

float fOf(uint16_t sample, uint16_t white) {
    const float t = static_cast<float>(sample) / static_cast<float>(white);
    if (t < static_cast<float>(kCieLinearBelow)) return kCieLinearSlope * t + kCieLinearOffset;
    return t <= 1.0f ? power(t, 1.0f / 3.0f) : 1.0f;  // brighter than the white is the white
}

uint16_t chroma(float value) {
    return static_cast<uint16_t>(static_cast<uint32_t>(kLabNeutral) +
                                 static_cast<uint32_t>(truncated(value)));
}

LabPixel labOfXyz(const LabPixel& xyz, const uint16_t (&white)[3]) {
    const float fX = fOf(xyz[0], white[0]);
    const float fY = fOf(xyz[1], white[1]);
    const float fZ = fOf(xyz[2], white[2]);
    return {static_cast<uint16_t>(truncated((fY * 116.0f - 16.0f) * kLabLScale + 0.5f)),
            chroma((fX - fY) * kAPerF), chroma((fY - fZ) * kBPerF)};
}

icPixelLayout_t twoPixels(uint16_t* samples, uint32_t channels) {
    icPixelLayout_t layout = {};
    layout.dataType = icSamples16;
    layout.contiguous = 1;
    layout.pixelCount = 2;
    layout.lineCount = 1;
    layout.channelCount = static_cast<int32_t>(channels);
    layout.pixelStep = layout.channelCount * 2;
    layout.lineStep = layout.channelCount * 4;
    layout.channelData[0] = samples;
    return layout;
}

/// What a device transform gives for all channels at 0 and all at 65535; null where that is no
/// colour of a connection space.
std::shared_ptr<const icBlackWhite_t> findBlackWhite(const icXformInternal& xform) {
    constexpr uint32_t kLabChannels = 3;
    if (!isConnectionSpace(xform.outSpace) || xform.outChannels != kLabChannels) return nullptr;
    std::array<uint16_t, 2 * kMaxChannels> device = {};
    std::fill_n(device.begin() + xform.inChannels, xform.inChannels, uint16_t{65535});
    std::array<uint16_t, 2 * kLabChannels> results = {};
    const icPixelLayout_t source = twoPixels(device.data(), xform.inChannels);
    const icPixelLayout_t destination = twoPixels(results.data(), kLabChannels);
    if (icEvaluate(&xform, &source, &destination, nullptr, nullptr) != icSuccess) return nullptr;

    LabPixel lighter = {results[0], results[1], results[2]};
    LabPixel darker = {results[3], results[4], results[5]};
    if (xform.outSpace == kSpaceXyz) {
        lighter = labOfXyz(lighter, xform.pcsWhite);
        darker = labOfXyz(darker, xform.pcsWhite);
    }
    if (darker[0] > lighter[0]) std::swap(lighter, darker);
    auto found = std::make_shared<icBlackWhite_t>();
    std::copy(lighter.begin(), lighter.end(), found->white);
    std::copy(darker.begin(), darker.end(), found->black);
    return found;
}

/// Black and white of a transform, found when first asked for and kept with it.
const std::shared_ptr<const icBlackWhite_t>& blackWhiteOf(icXformInternal& xform) {
    if (xform.blackWhite == nullptr) xform.blackWhite = findBlackWhite(xform);
    return xform.blackWhite;
}

XformPtr makeStage(uint32_t kind, icXformInternal& xform) {
    XformPtr stage = newXform();
    stage->kind = kind;
    std::copy_n(xform.pcsWhite, 3, stage->pcsWhite);
    std::copy_n(xform.mediaWhite, 3, stage->mediaWhite);
    stage->inSpace = stage->outSpace = kSpaceLab;
    stage->inChannels = stage->outChannels = 3;
    stage->state = XformState(blackWhiteOf(xform));
    return stage;
}

icXform_t stageOrNull(uint32_t kind, icXform_t xform) {
    icXform_t stage = nullptr;
    guarded([&] {
        if (std::max(xform->inChannels, xform->outChannels) <= kMaxChannels) {
            stage = makeStage(kind, *writable(xform)).release();
        }
        return icSuccess;
    });
    return stage;
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

icXform_t icGetPerceptualToRelativeXform(icXform_t xform) {
    if (xform == nullptr || xform->inSpace != kSpaceRgb) return nullptr;
    return stageOrNull(kKindPerceptualToRelative, xform);
}

icXform_t icGetRelativeToPerceptualXform(icXform_t xform) {
    if (xform == nullptr) return nullptr;
    icXform_t stage = stageOrNull(kKindRelativeToPerceptual, xform);
    if (stage != nullptr && !stage->state) {
        icXformFree(stage);
        return nullptr;
    }
    return stage;
}
