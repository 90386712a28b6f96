// SPDX-License-Identifier: Apache-2.0
//
// Checks of a profile against ICC.1:2001-04 (version 2) and ICC.1:2010 (version 4).
#pragma once

#include <vector>

#include "inspect/subject.h"
#include "inspect/transform_facts.h"
#include "inspect/violation_list.h"

namespace lumoxa::inspection {

/// All the checks, in the order header, tag table, required tags, tags, transforms.
ViolationList findViolations(const Subject& subject, const std::vector<TransformFact>& transforms);

void checkHeader(const ProfileFile& file, ViolationList& list);
void checkTagTable(const ProfileFile& file, ViolationList& list);
void checkRequiredTags(const ProfileFile& file, ViolationList& list);
void checkTags(const ProfileFile& file, ViolationList& list);
/// What the engine can't read or make and no violation found before explains.
void checkEngine(const Subject& subject, const std::vector<TransformFact>& transforms,
                 ViolationList& list);

}  // namespace lumoxa::inspection
