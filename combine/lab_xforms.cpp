// SPDX-License-Identifier: Apache-2.0
//
// Transforms made from formulas rather than from profiles, and the builders that put one of them
// before or behind a chain.
#include <algorithm>
#include <memory>
#include <vector>

#include "base/entry_guard.h"
#include "base/pcs_encoding.h"
#include "combine/chain.h"
#include "combine/lut16.h"
#include "eval/lab_xyz.h"
#include "lumoxa/combine.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

/// A stage between the connection spaces around `state`.
template <class Record, class State>
XformPtr makePcsStage(uint32_t kind, uint32_t inSpace, uint32_t outSpace, const uint16_t* pcsWhite,
                      const uint16_t* mediaWhite, std::unique_ptr<State> state) {
    XformPtr stage = newXform();
    stage->kind = kind;
    stage->inSpace = inSpace;
    stage->outSpace = outSpace;
    stage->inChannels = stage->outChannels = 3;
    std::copy_n(pcsWhite, 3, stage->pcsWhite);
    std::copy_n(mediaWhite, 3, stage->mediaWhite);
    state->refCount = 1;
    stage->state = XformState(std::shared_ptr<const Record>(std::move(state)));
    return stage;
}

/// The result of `make`, or null when it runs out of memory.
template <class Make>
icXformInternal* madeOrNull(Make make) {
    icXformInternal* stage = nullptr;
    guarded([&] {
        stage = make().release();
        return icSuccess;
    });
    return stage;
}

/// Fills a lut of two grid points a dimension so that it passes Lab through.
void fillIdentityGrid(uint16_t* clut) {
    for (int point = 0; point < 8; ++point) {
        for (int c = 0; c < 3; ++c) {
            *clut++ = (point >> (2 - c) & 1) != 0 ? 65535 : 0;
        }
    }
}

int makeLabXform(const int (&bits)[3], icXform_t* out) {
    // Z differs from that of the connection-space white (27030). An absolute chain scales by this
    // media white.
    constexpr uint16_t kMediaWhite[3] = {31595, 32768, 20730};
    icLut16Type* block = nullptr;
    if (const int code = icAllocLut16(&block, 3, 2, 2, 3, 2, nullptr)) return code;
    Lut16Ptr lut(block);
    const Lut16View view(*lut);
    fillIdentityGrid(view.clut());
    for (int c = 0; c < 3; ++c) {
        view.outputTable(c)[1] = static_cast<uint16_t>((1 << bits[c]) - 1);
    }
    XformPtr xform = newXform();
    xform->kind = kTypeLut16;
    xform->intent = icAbsoluteColorimetric;
    xform->transType = icCombined;
    xform->inSpace = xform->outSpace = kSpaceLab;
    std::copy_n(kD50White, 3, xform->pcsWhite);
    std::copy_n(kMediaWhite, 3, xform->mediaWhite);
    xform->tagData.reset(reinterpret_cast<icTagBase*>(lut.release()));
    attachLutState(*xform, LutStateKind::kPlain);
    *out = xform.release();
    return icSuccess;
}

/// Makes a stage with the white of `neighbour` on both sides and its intent.
template <class Make>
XformPtr labStageBeside(const icXformInternal& neighbour, Make make) {
    XformPtr stage(make(neighbour.pcsWhite));
    if (!stage) throw std::bad_alloc();
    stage->intent = neighbour.intent;
    return stage;
}

/// Combines a transform with the XYZ-to-Lab stage behind it by `combine(chain)`.
template <class Combine>
int buildToLab(int count, const icXform_t* chain, icXform_t* out, Combine combine) {
    if (out != nullptr) *out = nullptr;
    if (out == nullptr || !isChain(count, chain) || count != 1) return icErrInvalid;
    if (!isConnectionSpace(chain[0]->outSpace)) return icErrXformKind;
    return guarded([&] {
        const XformPtr stage = labStageBeside(
            *chain[0], [](const uint16_t* white) { return icGetXyzToLabXform(white, white); });
        stage->transType = icPcsToDevice;
        const icXform_t both[] = {chain[0], stage.get()};
        return combine(both);
    });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

icXformInternal* icGetLabToXyzXform(const unsigned short pcsWhite[3],
                                    const unsigned short mediaWhite[3], bool fullScaleL) {
    if (pcsWhite == nullptr || mediaWhite == nullptr) return nullptr;
    return madeOrNull([&] {
        return makePcsStage<LabToXyz_t>(kKindLabToXyz, kSpaceLab, kSpaceXyz, pcsWhite, mediaWhite,
                                        makeLabToXyz(pcsWhite, fullScaleL));
    });
}

icXformInternal* icGetXyzToLabXform(const unsigned short pcsWhite[3],
                                    const unsigned short mediaWhite[3]) {
    if (pcsWhite == nullptr || mediaWhite == nullptr) return nullptr;
    return madeOrNull([&] {
        return makePcsStage<XyzToLab_t>(kKindXyzToLab, kSpaceXyz, kSpaceLab, pcsWhite, mediaWhite,
                                        makeXyzToLab(pcsWhite));
    });
}

int icMakeLabXform(int bitsL, int bitsA, int bitsB, icXform_t* out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    const int bits[] = {bitsL, bitsA, bitsB};
    if (std::any_of(bits, bits + 3, [](int b) { return b < 1 || b > 16; })) return icErrInvalid;
    return guarded([&] { return makeLabXform(bits, out); });
}

int icBuildLabXform(int count, const icXform_t* chain, icXform_t* out, int* failingLink) {
    if (out != nullptr) *out = nullptr;
    if (out == nullptr || !isChain(count, chain)) return icErrInvalid;
    if (!isConnectionSpace(chain[0]->inSpace)) return icErrXformKind;
    return guarded([&] {
        const XformPtr stage = labStageBeside(*chain[0], [](const uint16_t* white) {
            return icGetLabToXyzXform(white, white, true);
        });
        std::vector<icXform_t> longer{stage.get()};
        longer.insert(longer.end(), chain, chain + count);
        return icCombineXforms(count + 1, longer.data(), out, failingLink, nullptr, nullptr, 0);
    });
}

int icBuild2LabXform(int count, const icXform_t* chain, icXform_t* out, int options,
                     int* failingLink) {
    return buildToLab(count, chain, out, [&](const icXform_t* both) {
        return icCombineXforms(2, both, out, options, failingLink, nullptr, nullptr, 0);
    });
}

int icBuild2LabXform(int count, const icXform_t* chain, icXform_t* out, int* failingLink) {
    return buildToLab(count, chain, out, [&](const icXform_t* both) {
        return icCombineXforms(2, both, out, failingLink, nullptr, nullptr, 0);
    });
}
