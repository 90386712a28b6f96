// SPDX-License-Identifier: Apache-2.0
//
// Text tags of profiles, for people.
#pragma once

#include <cstdint>
#include <string>

#include "tools/profile_source.h"
#include "tools/signatures.h"

namespace lumoxa_tool {

inline constexpr uint32_t kProfileDescriptionTag = fourCc("desc");
inline constexpr uint32_t kCopyrightTag = fourCc("cprt");

/// The text of a 'desc', 'mluc' or 'text' tag in UTF-8, on one line; the English one of several,
/// else the first; empty when the tag holds none that can be read.
std::string tagText(const Tag& tag);

}  // namespace lumoxa_tool
