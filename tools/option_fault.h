// SPDX-License-Identifier: Apache-2.0
//
// Values of the command line that the library refuses.
#pragma once

#include <new>
#include <string>

#include "lumoxa/lumoxa.hpp"
#include "tools/tool_error.h"

namespace lumoxa_tool {

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
