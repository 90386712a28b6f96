// SPDX-License-Identifier: Apache-2.0
//
// Kernels of the gray kinds: gray to L*, a*, b* ('KtoL') and L* to a main channel with two
// companions ('LtoK'), each by three tables at one position. Single precision.
#pragma once

#include <algorithm>
#include <cstddef>
#include <limits>

#include "base/pcs_encoding.h"
#include "lumoxa/gray.h"
#include "lut/curve_mask.h"
#include "lut/table_lookup.h"

namespace lumoxa {

/// The tables of one direction.
struct GrayTableView {
    const uint16_t* tables[3];
    uint32_t entries;
};
inline GrayTableView inTablesOf(const GrayConv_t& s) {
    return {{s.inTable1, s.inTable2, s.inTable3}, s.inEntries};
}
inline GrayTableView outTablesOf(const GrayConv_t& s) {
    return {{s.outTable1, s.outTable2, s.outTable3}, s.outEntries};
}

/// Pixels have three samples on both sides; of the source's only the first is read.
///
/// Results are stored without clipping: to 8 bits, a table value of 65408 or more becomes 256 and
/// wraps to 0. Without tables a sample passes through as the number it is, also from 8 to 16 bits.
template <class In, class Out, GrayTableView (*TablesOf)(const GrayConv_t&)>
void convertGray(const GrayConv_t& s, const In* source, Out* destination, ptrdiff_t pixels,
                 bool withTables) {
    if (s.built == 0 || !withTables) {
        for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3)
            std::fill_n(destination, 3, static_cast<Out>(*source));
        return;
    }
    constexpr float kToSample = sizeof(Out) == 1 ? 0.00390625f : 1.0f;  // 1 / 256
    const GrayTableView view = TablesOf(s);
    const auto last = static_cast<int32_t>(view.entries) - 2;
    const float scale =
        static_cast<float>(view.entries - 1) / static_cast<float>(std::numeric_limits<In>::max());
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const float x = static_cast<float>(*source) * scale;
        for (int c = 0; c < 3; ++c)
            destination[c] = roundWrapped<Out>(lookUp(view.tables[c], last, x) * kToSample);
    }
}

/// The in tables hold the tone itself, which no combination's input tables can carry.
template <class In, class Out>
void grayToLab(const GrayConv_t& s, const In* source, Out* destination, ptrdiff_t pixels,
               CurveMask) {
    convertGray<In, Out, inTablesOf>(s, source, destination, pixels, true);
}

template <class In, class Out>
void labToGray(const GrayConv_t& s, const In* source, Out* destination, ptrdiff_t pixels,
               CurveMask curves) {
    convertGray<In, Out, outTablesOf>(s, source, destination, pixels, curves.output);
}

}  // namespace lumoxa
