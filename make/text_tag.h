// SPDX-License-Identifier: Apache-2.0
//
// Texts of a profile as tags, in the type that its version has for them.
#pragma once

#include <string_view>

#include "profile/tag_bytes.h"

namespace lumoxa::engine {

/// A whole tag: from version 4 on a multi-localized text with one record, American English; before
/// it a textDescriptionType, or a textType for 'cprt'.
///
/// @param signature  'desc', 'cprt', 'dmnd', 'dmdd' or 'vued'
/// @param text       UTF-8 without control characters but line breaks and tabs; ASCII before
///                   version 4
/// @param version    as in the header: 0x02400000 is 2.4
/// @throws FaultError for another signature and for a text that the type can't hold
TagBytes textTagFor(uint32_t signature, std::string_view text, uint32_t version);

}  // namespace lumoxa::engine
