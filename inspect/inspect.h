// SPDX-License-Identifier: Apache-2.0
//
// Facts and faults of a profile.
#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace lumoxa::inspection {

/// What a profile holds, what the engine makes of it, and what in it breaks ICC.1, as JSON
/// (docs/inspect.md). Bytes that are no profile make a report too. Throws std::bad_alloc.
std::string inspectProfile(std::span<const uint8_t> bytes);

}  // namespace lumoxa::inspection
