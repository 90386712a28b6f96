// SPDX-License-Identifier: Apache-2.0
#include "lut/simplex_nodes.h"

#include <new>

namespace lumoxa {
namespace {

template <class Entry>
std::shared_ptr<const uint16_t[]> packed(const Entry* entry, uint64_t nodes, int outputs) {
    const auto padded = static_cast<uint64_t>(paddedOutputs(outputs));
    if (nodes * padded * sizeof(uint16_t) > kMaxNodeBytes) throw std::bad_alloc();
    std::shared_ptr<uint16_t[]> numbers(new uint16_t[static_cast<size_t>(nodes * padded)]());
    uint16_t* node = numbers.get();
    for (uint64_t n = 0; n < nodes; ++n, entry += outputs, node += padded) {
        for (int o = 0; o < outputs; ++o)
            node[o] = entry[o];
    }
    return numbers;
}

}  // namespace

std::shared_ptr<const uint16_t[]> packNodes(const uint16_t* entries, uint64_t nodes, int outputs) {
    return packed(entries, nodes, outputs);
}

std::shared_ptr<const uint16_t[]> packNodes(const icLutState_t& s) {
    uint64_t nodes = 1;
    for (int d = 0; d < s.inChannels; ++d)
        nodes *= static_cast<uint64_t>(s.lastCell[d] + 2);
    return s.clut8 != nullptr ? packed(s.clut8, nodes, s.outChannels)
                              : packed(s.clut16, nodes, s.outChannels);
}

}  // namespace lumoxa
