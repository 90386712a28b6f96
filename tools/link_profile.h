// SPDX-License-Identifier: Apache-2.0
//
// A device-link profile around a table.
#pragma once

#include <string>
#include <vector>

#include "tools/combined_chain.h"
#include "tools/profile_handle.h"

namespace lumoxa_tool {

struct LinkTexts {
    std::string description;
    std::string copyright;
};

/// "FIRST to LAST", in the characters that a description of version 2 can hold.
std::string linkDescription(const std::vector<Profile>& profiles);

/// @throws UsageError for a text that a link can't hold, before the work for one begins
void requireStorable(const LinkTexts& texts);

/// A profile of class 'link', version 2.4, with every tag that the class requires.
///
/// @param profiles  those that the table was made from, listed in the profile
/// @throws UsageError for a text that the profile can't hold, InputError, std::bad_alloc
ProfileHandle makeLinkProfile(const std::vector<Profile>& profiles, const Table& table,
                              icRenderingIntent intent, const LinkTexts& texts);

}  // namespace lumoxa_tool
