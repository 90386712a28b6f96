// SPDX-License-Identifier: Apache-2.0
#include "tools/violation_list.h"

#include <utility>

namespace lumoxa_tool {

void ViolationList::add(std::string tag, uint64_t offset, const std::string& rule, Clause clause,
                        const std::string& found) {
    if (full()) {
        ++more_;
        return;
    }
    std::string text = rule;
    if (!found.empty()) text += ", but " + found;
    const std::string number = version2_ ? clause.v2 : clause.v4;
    if (!number.empty())
        text += (version2_ ? " (ICC.1:2001-04, " : " (ICC.1:2010, ") + number + ")";
    violations_.push_back({std::move(tag), offset, std::move(text)});
}

}  // namespace lumoxa_tool
