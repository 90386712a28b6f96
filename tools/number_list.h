// SPDX-License-Identifier: Apache-2.0
//
// Numbers on the command line and in text files.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// A finite decimal number with blanks around it at most, whatever the locale; else nothing.
std::optional<double> parseNumber(const std::string& text);

/// Numbers with commas between.
/// @param option  names them in the message
/// @throws UsageError unless there are `count` of them
std::vector<double> parseNumbers(const std::string& option, const std::string& text, size_t count);

}  // namespace lumoxa_tool
