// SPDX-License-Identifier: Apache-2.0
#include "lut/penta.h"
#include "lut/tetra.h"

namespace lumoxa {
namespace {

template <class State, class Scheme>
std::unique_ptr<State> buildSimplexState(const icTagBase* tag, uint32_t inSpace,
                                         uint32_t outSpace) {
    auto state = std::make_unique<State>();
    icBuildLutState(tag, inSpace, outSpace, *state);
    if (state->hasClut) state->coefficients = SimplexTable<Scheme>::build(*state);
    return state;
}

}  // namespace

std::unique_ptr<icLutTetraState_t> icBuildTetraState(const icTagBase* tag, uint32_t inSpace,
                                                     uint32_t outSpace) {
    return buildSimplexState<icLutTetraState_t, TetraScheme>(tag, inSpace, outSpace);
}

std::unique_ptr<icLutPentaState_t> icBuildPentaState(const icTagBase* tag, uint32_t inSpace,
                                                     uint32_t outSpace) {
    return buildSimplexState<icLutPentaState_t, PentaScheme>(tag, inSpace, outSpace);
}

}  // namespace lumoxa
