// SPDX-License-Identifier: Apache-2.0
//
// What a tone curve tag holds, as a report says it.
#pragma once

#include <cstdint>
#include <vector>

#include "inspect/byte_view.h"

namespace lumoxa::inspection {

struct CurveForm {
    enum Kind { kIdentity, kGamma, kTable, kParametric, kUnreadable };

    Kind kind = kUnreadable;
    uint32_t entries = 0;   ///< of a table
    uint32_t function = 0;  ///< of a parametric curve
    /// Gamma, or g, a, b, c, d, e, f of a parametric curve as far as its function has them.
    std::vector<double> numbers;
    uint64_t bytes = 0;  ///< what the curve takes, without padding; 0 for an unknown type
};

/// @param data  bytes that start with a 'curv' or 'para' type, and may go on beyond the curve
CurveForm curveForm(ByteView data);

/// Name of the i-th parameter of a parametric curve.
char parameterName(size_t i);

}  // namespace lumoxa::inspection
