// SPDX-License-Identifier: Apache-2.0
#include "tools/icc_rules.h"

namespace lumoxa_tool {

ViolationList findViolations(const ProfileFile& file) {
    ViolationList list(file.majorVersion() == 2);
    checkHeader(file, list);
    if (!file.isProfile()) return list;
    checkTagTable(file, list);
    checkRequiredTags(file, list);
    checkTags(file, list);
    return list;
}

}  // namespace lumoxa_tool
