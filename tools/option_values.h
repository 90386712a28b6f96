// SPDX-License-Identifier: Apache-2.0
//
// Options that commands share, and values: numbers, which stand in text files too, and what the
// library refuses.
#pragma once

#include <cstddef>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"
#include "tools/tool_error.h"

namespace CLI {
class App;
}

namespace lumoxa_tool {

/// What commands that make a profile are given for it.
struct NewProfile {
    std::string output;
    std::optional<std::string> description, copyright;
    bool quiet = false;  ///< neither report nor notes
};

/// Declares --output, --description, --copyright and --quiet.
/// @param description  tells what it is, and unless given
void addProfileOptions(CLI::App& command, NewProfile& profile, const std::string& description);

/// A finite decimal number with blanks around it at most, whatever the locale; else nothing.
std::optional<double> parseNumber(const std::string& text);

/// Numbers with commas between.
/// @param option  names them in the message
/// @throws UsageError unless there are `count` of them
std::vector<double> parseNumbers(const std::string& option, const std::string& text, size_t count);

/// What `work` returns, which asks the library for something with the value of an option.
/// @throws UsageError with the library's sentence where it refuses the value
template <class Work>
auto withOption(const std::string& option, const Work& work) {
    try {
        return work();
    } catch (const lumoxa::Error& error) {
        if (error.code() == LMX_ERR_NO_MEMORY) throw std::bad_alloc();
        throw UsageError(option + ": " + error.what());
    }
}

}  // namespace lumoxa_tool
