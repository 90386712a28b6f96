// SPDX-License-Identifier: Apache-2.0
//
// Descriptions and copyrights as tags, in the form that a profile's version has for them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// A whole tag in file byte order: a textDescriptionType before version 4, from then on a
/// multi-localized text whose one record is American English.
///
/// @param text     UTF-8; ASCII only before version 4
/// @param version  as in the header: 0x02400000 is 2.4
/// @throws UsageError for a text that the tag can't hold
std::vector<uint8_t> descriptionTag(const std::string& text, uint32_t version);

/// As descriptionTag; a textType before version 4.
std::vector<uint8_t> copyrightTag(const std::string& text, uint32_t version);

}  // namespace lumoxa_tool
