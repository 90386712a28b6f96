// SPDX-License-Identifier: Apache-2.0
//
// Text tags of profiles, for people.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/byte_view.h"
#include "tools/profile_source.h"
#include "tools/signatures.h"

namespace lumoxa_tool {

inline constexpr uint32_t kProfileDescriptionTag = fourCc("desc");
inline constexpr uint32_t kCopyrightTag = fourCc("cprt");

/// The text of a 'desc', 'mluc' or 'text' tag in UTF-8, on one line; the English one of several,
/// else the first; empty when the tag holds none that can be read.
std::string tagText(const Tag& tag);
std::string tagText(ByteView tag);

struct LocalizedText {
    std::string language;  ///< "en-US"; empty for a type without languages
    std::string text;
};

struct LocalizedTexts {
    std::vector<LocalizedText> texts;
    uint64_t more = 0;  ///< languages beyond those that are worth a line
};

/// The text in all the languages of the tag, each as tagText() gives it.
LocalizedTexts tagTexts(ByteView tag);

}  // namespace lumoxa_tool
