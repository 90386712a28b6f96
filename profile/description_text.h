// SPDX-License-Identifier: Apache-2.0
//
// The text of a description tag, whichever of the three types of text it has.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace lumoxa {

/// The text of a 'desc' (version 2), 'mluc' or 'text' tag as UTF-8, up to its first NUL. Of several
/// languages American English, else any English, else the first; of a 'desc' the Unicode text
/// where the ASCII text is empty.
///
/// Where a type demands ASCII and a maker wrote more, the bytes are UTF-8 if that is what they
/// form, else Latin-1. Halves of surrogate pairs become U+FFFD.
///
/// @param descTag  whole tag in file byte order, from anywhere
/// @return empty for another type, and for text that doesn't lie inside the tag
std::string descriptionUtf8(std::span<const uint8_t> descTag);

/// UTF-16 in file byte order as UTF-8, up to its first NUL.
std::string utf8FromUtf16(std::span<const uint8_t> units);

struct LocalizedText {
    std::string language;  ///< as in the tag: "enUS", NUL where there is no country; may be empty
    std::string text;      ///< UTF-8
};

/// The text in all its languages, as descriptionUtf8() gives one; of a type without languages that
/// one, unless it is empty. Stops where `mostBytes` of text have been read: records may share them.
/// @param more  receives how many records were left out
std::vector<LocalizedText> localizedTexts(std::span<const uint8_t> textTag, size_t mostBytes,
                                          uint64_t& more);

}  // namespace lumoxa
