// SPDX-License-Identifier: Apache-2.0
//
// What in a profile breaks ICC.1, as the rules find it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "inspect/clauses.h"

namespace lumoxa::inspection {

struct Violation {
    std::string tag;     ///< the tag's signature; empty for header and tag table
    int64_t offset;      ///< byte position in the file; -1 for none
    std::string rule;    ///< what ICC.1 demands, and what the file has instead
    std::string clause;  ///< "ICC.1:2010, 10.8"; may be empty
    bool isMinor = false;
};

/// Keeps the first hundred violations and counts the others: a hostile file has millions.
class ViolationList {
  public:
    static constexpr size_t kMost = 100;

    explicit ViolationList(bool version2) : version2_(version2) {}

    /// @param rule   what ICC.1 demands, in words
    /// @param found  what the file has instead; may be empty
    void add(std::string tag, uint64_t offset, const std::string& rule, Clause clause,
             const std::string& found = {});
    const std::vector<Violation>& violations() const { return violations_; }
    uint64_t more() const { return more_; }
    /// As add(), for what keeps no reader from reading the tag.
    void addMinor(std::string tag, uint64_t offset, const std::string& rule, Clause clause,
                  const std::string& found);
    /// Whether one of those kept may tell why the tag can't be read.
    bool explains(const std::string& tag) const;

  private:
    bool version2_;
    std::vector<Violation> violations_;
    uint64_t more_ = 0;
};

}  // namespace lumoxa::inspection
