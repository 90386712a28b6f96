// SPDX-License-Identifier: Apache-2.0
#include "inspect/icc_rules.h"

namespace lumoxa::inspection {

ViolationList findViolations(const Subject& subject, const std::vector<TransformFact>& transforms) {
    const ProfileFile& file = subject.file();
    ViolationList list(file.majorVersion() == 2);
    checkHeader(file, list);
    if (!file.isProfile()) return list;
    checkTagTable(file, list);
    checkRequiredTags(file, list);
    checkTags(file, list);
    checkEngine(subject, transforms, list);
    return list;
}

}  // namespace lumoxa::inspection
