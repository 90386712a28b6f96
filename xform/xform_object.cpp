// SPDX-License-Identifier: Apache-2.0
#include "xform/xform_object.h"

#include <algorithm>

namespace lumoxa {
namespace {

TagView tagOf(const icXformInternal& xform) {
    return {reinterpret_cast<const uint8_t*>(xform.tagData.get()), false};
}

template <class Scheme>
XformState makeSimplexState(const icXformInternal& xform) {
    return XformState(std::shared_ptr<const SimplexState<Scheme>>(
        buildSimplexState<Scheme>(xform.tagData.get(), xform.inSpace, xform.outSpace)));
}

XformState makeLutState(const icXformInternal& xform, LutStateKind kind) {
    if (kind == LutStateKind::kTetra) return makeSimplexState<TetraScheme>(xform);
    if (kind == LutStateKind::kPenta) return makeSimplexState<PentaScheme>(xform);
    auto plain = std::make_shared<icLutState_t>();
    icBuildLutState(xform.tagData.get(), xform.inSpace, xform.outSpace, *plain);
    return XformState(std::shared_ptr<const icLutState_t>(std::move(plain)));
}

}  // namespace

XformPtr newXform() {
    return XformPtr(new icXformInternal);
}

void attachLutState(icXformInternal& xform, LutStateKind kind) {
    const TagView tag = tagOf(xform);
    xform.state = makeLutState(xform, kind);
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
    attachLutState(xform, lutStateKindFor(tagOf(xform).inputs()));
}

}  // namespace lumoxa

using namespace lumoxa;

void icXformInc(icXform_t xform) {
    if (xform != nullptr) ++writable(xform)->refCount;
}

void icXformFree(icXform_t handle) {
    icXformInternal* xform = writable(handle);
    if (xform != nullptr && --xform->refCount < 1) delete xform;
}

int icXformGetDesc(icXform_t xform, icXformDesc_t* out) {
    if (xform == nullptr || out == nullptr) return icErrInvalid;
    *out = {xform->kind,     xform->intent,     xform->transType,  xform->inSpace,
            xform->outSpace, xform->inChannels, xform->outChannels};
    return icSuccess;
}
