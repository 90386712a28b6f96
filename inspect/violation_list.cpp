// SPDX-License-Identifier: Apache-2.0
#include "inspect/violation_list.h"

#include <algorithm>
#include <utility>

namespace lumoxa::inspection {

void ViolationList::add(std::string tag, uint64_t offset, const std::string& rule, Clause clause,
                        const std::string& found) {
    if (violations_.size() >= kMost) {
        ++more_;
        return;
    }
    violations_.push_back({std::move(tag), static_cast<int64_t>(offset),
                           found.empty() ? rule : rule + ", but " + found,
                           clauseText(clause, version2_)});
}

void ViolationList::addMinor(std::string tag, uint64_t offset, const std::string& rule,
                             Clause clause, const std::string& found) {
    const size_t before = violations_.size();
    add(std::move(tag), offset, rule, clause, found);
    if (violations_.size() > before) violations_.back().isMinor = true;
}

bool ViolationList::explains(const std::string& tag) const {
    return std::any_of(violations_.begin(), violations_.end(), [&](const Violation& violation) {
        return violation.tag == tag && !violation.isMinor;
    });
}

}  // namespace lumoxa::inspection
