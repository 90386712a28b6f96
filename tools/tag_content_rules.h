// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of the bytes of one tag, by its type.
#pragma once

#include "tools/profile_file.h"
#include "tools/violation_list.h"

namespace lumoxa_tool {

void checkTagContent(const ProfileFile& file, const TagEntry& entry, ViolationList& list);

}  // namespace lumoxa_tool
