// SPDX-License-Identifier: Apache-2.0
#include "lut/simplex_nodes.h"

#include <new>

namespace lumoxa {
namespace {

template <class Entry>
void copyNodes(const Entry* entry, uint64_t nodes, int outputs, int paddedOutputs, uint16_t* node) {
    for (uint64_t n = 0; n < nodes; ++n, entry += outputs, node += paddedOutputs) {
        for (int o = 0; o < outputs; ++o)
            node[o] = entry[o];
    }
}

}  // namespace

std::shared_ptr<const uint16_t[]> packNodes(const icLutState_t& s) {
    const int padded = outputGroups(s) * kOutputGroup;
    uint64_t nodes = 1;
    for (int d = 0; d < s.inChannels; ++d)
        nodes *= static_cast<uint64_t>(s.lastCell[d] + 2);
    const uint64_t numbers = nodes * static_cast<uint64_t>(padded);
    if (numbers * sizeof(uint16_t) > kMaxNodeBytes) throw std::bad_alloc();
    std::shared_ptr<uint16_t[]> packed(new uint16_t[static_cast<size_t>(numbers)]());
    if (s.clut8 != nullptr) {
        copyNodes(s.clut8, nodes, s.outChannels, padded, packed.get());
    } else {
        copyNodes(s.clut16, nodes, s.outChannels, padded, packed.get());
    }
    return packed;
}

}  // namespace lumoxa
