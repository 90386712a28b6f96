// SPDX-License-Identifier: Apache-2.0
//
// A chain of transforms made into one lut16 transform.
#include "lumoxa/combine.h"

#include <algorithm>
#include <vector>

#include "base/entry_guard.h"
#include "combine/chain.h"
#include "combine/end_tables.h"
#include "combine/grid_sampler.h"
#include "combine/grid_size.h"
#include "combine/lut16.h"
#include "combine/paper_white.h"

namespace lumoxa {
namespace {

constexpr int kKnownOptions = icCombineColorimetric | icCombineKeepPaperWhite;

/// Whether a transform can be a stage: it has a kernel, and three samples on a side that stands in
/// a connection space (a profile may name one and hold a tag of another shape).
bool canBeStage(const icXformInternal& xform) {
    const auto fits = [](uint32_t space, uint32_t channels) {
        return !isConnectionSpace(space) || channels == 3;
    };
    return bool{chooseStageKernel(xform)} && fits(xform.inSpace, xform.inChannels) &&
           fits(xform.outSpace, xform.outChannels);
}

/// A lut16 tag counts its table entries in 16 bits.
bool tablesFit(const ExpandedChain& chain) {
    constexpr uint32_t kMostEntries = 65535;
    return chain.first().inTableEntries <= kMostEntries &&
           chain.last().outTableEntries <= kMostEntries;
}

int allocateLut(const ExpandedChain& chain, const GridSize& size, Lut16Ptr& out) {
    const icXformInternal& first = chain.first();
    const icXformInternal& last = chain.last();
    icLut16Type* lut = nullptr;
    const int code = icAllocLut16(&lut, static_cast<int>(first.inChannels),
                                  static_cast<int>(first.inTableEntries), size.points,
                                  static_cast<int>(last.outChannels),
                                  static_cast<int>(last.outTableEntries), nullptr);
    out.reset(lut);
    return code;
}

void fillTables(const ExpandedChain& chain, const GridSize& size, bool colorimetric,
                const Lut16View& lut) {
    if (!size.identityInput) fillInputTables(chain.first(), lut);
    if (!colorimetric) liftDisplayBlack(chain.first(), lut);
    fillOutputTables(chain.last(), lut);
    if (!colorimetric) removeDisplayBlack(chain.first(), chain.last(), lut);
}

/// The stages' kernels, those of the end stages without the curves that the tables carry.
std::vector<BoundKernel> kernelsOf(const ExpandedChain& chain, bool identityInput) {
    const size_t last = chain.stages.size() - 1;
    std::vector<BoundKernel> kernels;
    for (size_t i = 0; i <= last; ++i) {
        const CurveMask curves{i > 0 || identityInput, i < last};
        kernels.push_back(chooseStageKernel(*chain.stages[i], curves));
    }
    return kernels;
}

/// Four-input grids that are larger than chooseGridSize() allows pentahedra stay multilinear.
LutStateKind stateKind(int inputs, const GridSize& size) {
    const LutStateKind kind = lutStateKindFor(static_cast<uint32_t>(inputs));
    return kind == LutStateKind::kPenta && !size.pentahedral ? LutStateKind::kPlain : kind;
}

XformPtr makeResult(const ExpandedChain& chain, Lut16Ptr lut) {
    const icXformInternal& first = chain.first();
    const icXformInternal& last = chain.last();
    XformPtr result = newXform();
    result->kind = kTypeLut16;
    result->inSpace = first.inSpace;
    result->outSpace = last.outSpace;
    result->intent = first.intent;
    result->transType = icCombined;
    // A result that ends in a connection space can go into another chain. Absolute scaling is
    // inside it already, hence no media white of its own. The scaling stage that ends a lone
    // absolute transform bears the media white in place of the connection space's.
    const icXformInternal& profiled = last.kind == kKindAbsolute ? first : last;
    std::copy_n(profiled.pcsWhite, 3, result->pcsWhite);
    std::copy_n(profiled.pcsWhite, 3, result->mediaWhite);
    result->tagData.reset(reinterpret_cast<icTagBase*>(lut.release()));
    return result;
}

int combine(int count, const icXform_t* chain, icXform_t* out, int options, int* failingLink,
            const CombineProgress& progress) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    if (!isChain(count, chain) || (options & ~kKnownOptions) != 0) return icErrInvalid;
    if (!stagesFit(count, chain, failingLink)) return icErrXformKind;
    if (!std::all_of(chain, chain + count, [](icXform_t xform) { return canBeStage(*xform); })) {
        return icErrXformKind;
    }
    const ExpandedChain expanded = expandChain(count, chain);
    if (!tablesFit(expanded)) return icErrXformKind;
    const GridSize size = chooseGridSize(expanded);
    Lut16Ptr lut;
    if (const int code = allocateLut(expanded, size, lut)) return code;
    const Lut16View view(*lut);
    fillTables(expanded, size, (options & icCombineColorimetric) != 0, view);

    progress.start();
    const int code = guarded([&] {
        const std::vector<BoundKernel> kernels = kernelsOf(expanded, size.identityInput);
        if (!sampleGrid(kernels, view, progress)) return icErrInvalid;
        if ((options & icCombineKeepPaperWhite) == 0) adjustPaperWhite(expanded, view);
        XformPtr result = makeResult(expanded, std::move(lut));
        attachLutState(*result, stateKind(view.inputs(), size));
        *out = result.release();
        return icSuccess;
    });
    const int answer = progress.end();
    return code == icErrInvalid && answer != 0 ? answer : code;
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icCombineXforms(int count, const icXform_t* chain, icXform_t* out, int* failingLink,
                    icProgressCallback, void*, unsigned int) {
    return guarded([&] {
        return combine(count, chain, out, 0, failingLink, CombineProgress(nullptr, nullptr));
    });
}

int icCombineXforms(int count, const icXform_t* chain, icXform_t* out, int options,
                    int* failingLink, icProgressCallback progress, void* user, unsigned int) {
    return guarded([&] {
        return combine(count, chain, out, options, failingLink, CombineProgress(progress, user));
    });
}
