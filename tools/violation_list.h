// SPDX-License-Identifier: Apache-2.0
//
// What in a profile breaks ICC.1, as the rules find it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "tools/profile_file.h"

namespace lumoxa_tool {

struct Violation {
    std::string tag;  ///< the tag's signature; empty for header and tag table
    uint64_t offset;  ///< byte position in the file
    std::string rule;
};

/// Where a rule stands: in ICC.1:2001-04 for version 2, in ICC.1:2010 for version 4. Empty where
/// that edition has no clause of its own for it.
struct Clause {
    const char* v2;
    const char* v4;
};

inline constexpr Clause kHeaderClause = {"6.1", "7.2"};
inline constexpr Clause kTagTableClause = {"6.2", "7.3"};
inline constexpr Clause kTagClause = {"6.4", "9.2"};
inline constexpr Clause kTypeClause = {"6.5", "10"};

/// Keeps the first hundred violations and counts the others: a hostile file has millions.
class ViolationList {
  public:
    static constexpr size_t kMost = 100;

    explicit ViolationList(bool version2) : version2_(version2) {}

    /// @param rule   what ICC.1 demands, in words
    /// @param found  what the file has instead; may be empty
    void add(std::string tag, uint64_t offset, const std::string& rule, Clause clause,
             const std::string& found = {});
    bool full() const { return violations_.size() >= kMost; }
    const std::vector<Violation>& violations() const { return violations_; }
    uint64_t more() const { return more_; }

  private:
    bool version2_;
    std::vector<Violation> violations_;
    uint64_t more_ = 0;
};

}  // namespace lumoxa_tool
