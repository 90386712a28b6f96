// SPDX-License-Identifier: Apache-2.0
#include "tools/grid_stage.h"

#include <iterator>

#include "tools/chain_link.h"
#include "tools/signatures.h"

namespace lumoxa_tool {

int gridOfStage(uint32_t inputs) {
    // Even, and one less than the chain gets: the library rounds up to odd numbers of points.
    static constexpr int kGrids[] = {0, 254, 254, 48, 32};
    constexpr int kManyInputs = 16;
    return inputs < std::size(kGrids) ? kGrids[inputs] : kManyInputs;
}

// Only one input needs the points, the library asks for the largest number. Between points that are
// rounded by less than a half, interpolation comes within a half of every whole number.
XformHandle makeGridStage(int grid, icRenderingIntent intent) {
    constexpr uint32_t kTop = 65535;
    constexpr uint32_t kHeaderBytes = 32;
    constexpr uint32_t kClutField = 24;
    const auto last = static_cast<uint32_t>(grid) - 1;
    std::vector<uint8_t> tag;
    put32(tag, kLutAToB);
    put32(tag, 0);
    tag.insert(tag.end(), {3, 3, 0, 0});
    while (tag.size() < kHeaderBytes)
        put32(tag, tag.size() == kClutField ? kHeaderBytes : 0);  // no other element
    tag.insert(tag.end(), {static_cast<uint8_t>(grid), 2, 2});
    tag.insert(tag.end(), 13, 0);
    tag.insert(tag.end(), {2, 0, 0, 0});  // bytes of a number
    for (uint32_t x = 0; x <= last; ++x) {
        for (const uint32_t yz : {0u, 1u, 2u, 3u}) {
            put16(tag, (x * kTop + last / 2) / last);
            put16(tag, (yz >> 1) * kTop);
            put16(tag, (yz & 1) * kTop);
        }
    }
    return xformOfTag(kAbstractClass, kXyz, kXyz, intent, tag);
}

}  // namespace lumoxa_tool
