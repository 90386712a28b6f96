// SPDX-License-Identifier: Apache-2.0
#include "lut/simplex_nodes.h"

#include <new>

namespace lumoxa {
namespace {

template <class Entry>
void copyNodes(const Entry* entry, uint64_t nodes, int outputs, int paddedOutputs, float* node) {
    for (uint64_t n = 0; n < nodes; ++n, entry += outputs, node += paddedOutputs) {
        for (int o = 0; o < outputs; ++o)
            node[o] = static_cast<float>(entry[o]);
    }
}

}  // namespace

std::shared_ptr<const float[]> packNodes(const icLutState_t& s) {
    const int padded = outputGroups(s) * kOutputGroup;
    uint64_t nodes = 1;
    for (int d = 0; d < s.inChannels; ++d)
        nodes *= static_cast<uint64_t>(s.lastCell[d] + 2);
    const uint64_t floats = nodes * static_cast<uint64_t>(padded);
    if (floats * sizeof(float) > kMaxNodeBytes) throw std::bad_alloc();
    std::shared_ptr<float[]> packed(new float[static_cast<size_t>(floats)]());
    if (s.clut8 != nullptr) {
        copyNodes(s.clut8, nodes, s.outChannels, padded, packed.get());
    } else {
        copyNodes(s.clut16, nodes, s.outChannels, padded, packed.get());
    }
    return packed;
}

}  // namespace lumoxa
