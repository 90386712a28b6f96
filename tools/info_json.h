// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "tools/profile_facts.h"

namespace lumoxa_tool {

/// The facts as one JSON document, in UTF-8 whatever the profile holds.
std::string jsonText(const ProfileFacts& facts);

}  // namespace lumoxa_tool
