// SPDX-License-Identifier: Apache-2.0
//
// Where rules stand in the editions of ICC.1. The clauses of types follow the alphabet in each
// edition: ICC.1:2010 has types that ICC.1:2001-04 doesn't know, and the other way round.
#pragma once

#include <cstdint>
#include <string>

namespace lumoxa::inspection {

/// A rule's clause in ICC.1:2001-04, for version 2, and in ICC.1:2010, for version 4. Null where
/// that edition doesn't have the rule in words.
struct Clause {
    const char* v2;
    const char* v4;
};

inline constexpr Clause kHeaderClause = {"6.1", "7.2"};
inline constexpr Clause kTagTableClause = {"6.2", "7.3"};
inline constexpr Clause kTagClause = {"6.4", "9.2"};
inline constexpr Clause kTypeClause = {"6.5", "10"};

/// The clause of a tag type; kTypeClause for one that neither edition lists.
Clause clauseOfType(uint32_t type);

/// Whether either edition lists a type.
bool isKnownType(uint32_t type);

/// "ICC.1:2010, 10.8": that of the profile's version, else the other one; empty for none.
std::string clauseText(const Clause& clause, bool version2);

}  // namespace lumoxa::inspection
