// SPDX-License-Identifier: Apache-2.0
//
// Checks of a profile against ICC.1:2001-04 (version 2) and ICC.1:2010 (version 4).
#pragma once

#include "tools/profile_file.h"
#include "tools/violation_list.h"

namespace lumoxa_tool {

/// All the checks, in the order header, tag table, required tags, tags.
ViolationList findViolations(const ProfileFile& file);

void checkHeader(const ProfileFile& file, ViolationList& list);
void checkTagTable(const ProfileFile& file, ViolationList& list);
void checkRequiredTags(const ProfileFile& file, ViolationList& list);
void checkTags(const ProfileFile& file, ViolationList& list);

}  // namespace lumoxa_tool
