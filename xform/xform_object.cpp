// SPDX-License-Identifier: Apache-2.0
#include "xform/xform_object.h"

#include <algorithm>
#include <cstdlib>
#include <new>

#include "profile/c_heap.h"

namespace lumoxa {

XformPtr newXform() {
    auto record = allocateZeroed<icXformInternal>(sizeof(icXformInternal));
    if (!record) throw std::bad_alloc();
    record->refCount = 1;
    return XformPtr(record.release());
}

void attachLutState(icXformInternal& xform, LutStateKind kind) {
    const TagView tag{reinterpret_cast<const uint8_t*>(xform.tagData), false};
    if (kind == LutStateKind::kTetra) {
        xform.tetraState =
            buildSimplexState<TetraScheme>(xform.tagData, xform.inSpace, xform.outSpace).release();
    } else if (kind == LutStateKind::kPenta) {
        xform.pentaState =
            buildSimplexState<PentaScheme>(xform.tagData, xform.inSpace, xform.outSpace).release();
    } else {
        auto plain = std::make_unique<icLutState_t>();
        icBuildLutState(xform.tagData, xform.inSpace, xform.outSpace, *plain);
        adoptState(xform, std::move(plain));
    }
    const icLutState_t& s = *lutStateOf(xform);
    const auto entriesOf = [](int32_t own, int32_t middle) {
        return static_cast<uint32_t>(own != 0 ? own : middle);
    };
    xform.inChannels = tag.inputs();
    xform.outChannels = tag.outputs();
    xform.gridPoints = *std::max_element(s.gridPoints, s.gridPoints + kMaxInputs);
    xform.inTableEntries = entriesOf(s.inputEntries, s.middleEntries);
    xform.outTableEntries = entriesOf(s.outputEntries, s.middleEntries);
}

void attachLutState(icXformInternal& xform) {
    const TagView tag{reinterpret_cast<const uint8_t*>(xform.tagData), false};
    attachLutState(xform, lutStateKindFor(tag.inputs()));
}

}  // namespace lumoxa

using namespace lumoxa;

void icXformInc(icXform_t xform) {
    if (xform != nullptr) ++writable(xform)->refCount;
}

void icXformFree(icXform_t handle) {
    icXformInternal* xform = writable(handle);
    if (xform == nullptr || --xform->refCount >= 1) return;
    if (xform->releaseState != nullptr) xform->releaseState(xform->state);
    dropBlackWhite(xform->blackWhite);
    delete xform->tetraState;
    delete xform->pentaState;
    std::free(xform->tagData);
    std::free(xform);
}

int icXformGetDesc(icXform_t xform, icXformDesc_t* out) {
    if (xform == nullptr || out == nullptr) return icErrInvalid;
    *out = {xform->kind,     xform->intent,     xform->transType,  xform->inSpace,
            xform->outSpace, xform->inChannels, xform->outChannels};
    return icSuccess;
}
