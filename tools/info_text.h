// SPDX-License-Identifier: Apache-2.0
//
// The library's report on a profile (docs/inspect.md), for people.
#pragma once

#include <ostream>
#include <string>

#include <nlohmann/json_fwd.hpp>

namespace lumoxa_tool {

/// @param report  as lumoxa::inspect() gives it
/// @param name    the title of a profile that has no description
void printReport(std::ostream& out, const nlohmann::json& report, const std::string& name);

}  // namespace lumoxa_tool
