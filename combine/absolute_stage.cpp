// SPDX-License-Identifier: Apache-2.0
#include "combine/absolute_stage.h"

#include <algorithm>

#include "eval/kernel.h"
#include "profile/pcs_encoding.h"

namespace lumoxa {
namespace {

void scaleWhite(const icXformInternal& s, const uint16_t* source, uint16_t* destination,
                ptrdiff_t pixels) {
    float scale[3];
    for (int c = 0; c < 3; ++c) {
        scale[c] = static_cast<float>(s.pcsWhite[c]) / static_cast<float>(s.mediaWhite[c]);
    }
    for (ptrdiff_t i = 0; i < pixels; ++i) {
        for (int c = 0; c < 3; ++c) {
            *destination++ = roundClipped<uint16_t>(static_cast<float>(*source++) * scale[c]);
        }
    }
}

}  // namespace

XformPtr makeAbsoluteStage(const uint16_t* first, const uint16_t* second, AbsoluteMode mode) {
    XformPtr stage = newXform();
    stage->kind = kKindAbsolute;
    std::copy_n(second, 3, stage->pcsWhite);
    std::copy_n(first, 3, stage->mediaWhite);
    stage->intent = static_cast<uint32_t>(mode);
    stage->inSpace = stage->outSpace = kSpaceXyz;
    stage->inChannels = stage->outChannels = 3;
    stage->state = stage.get();
    return stage;
}

void convertAbsolute(const void* state, const void* source, void* destination, int pixels) {
    runOnAllCores<icXformInternal, scaleWhite>(*static_cast<const icXformInternal*>(state),
                                               static_cast<const uint16_t*>(source),
                                               static_cast<uint16_t*>(destination), pixels, 3, 3);
}

}  // namespace lumoxa
