// SPDX-License-Identifier: Apache-2.0
//
// In tables: from the device value to L*, a* and b*, kind 'KtoL'.
#pragma once

#include "gray/pre_luts.h"

namespace lumoxa {

inline constexpr uint32_t kInEntries = 4096;

/// Builds the in tables of a state that has curves and at least 2 entries. Throws std::bad_alloc.
void buildInTables(GrayConv_t& state, const ToneRequest& request);

}  // namespace lumoxa
