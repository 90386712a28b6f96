// SPDX-License-Identifier: Apache-2.0
//
// Tone curves as tags: from device values to linear light, both 0..1.
#pragma once

#include <cstdint>
#include <vector>

#include "profile/tag_bytes.h"

namespace lumoxa::engine {

/// Values that a curve in a table has, over even steps of the device value.
inline constexpr size_t kFewestCurveValues = 2, kMostCurveValues = 4096;

struct ToneCurveForm {
    enum class Kind { kSrgb, kGamma, kTable };

    Kind kind = Kind::kSrgb;    ///< kSrgb: the two parts of IEC 61966-2-1
    double gamma = 1;           ///< of kGamma: above 0 and below 256
    std::vector<double> table;  ///< of kTable: 0..1, none below the one before it
};

/// A whole tag in the exact form that a version has: from version 4 on parameters, before it one
/// gamma where 8 fractional bits hold it, else 4096 entries. Tables are entries in both.
///
/// @param version  as in the header: 0x02400000 is 2.4
/// @throws FaultError for a gamma or table outside of what is said above
TagBytes toneCurveTag(const ToneCurveForm& curve, uint32_t version);

/// A curve of entries, with the two zero bytes behind them that icFillTrc puts there.
TagBytes entriesTag(const std::vector<uint16_t>& entries);

}  // namespace lumoxa::engine
