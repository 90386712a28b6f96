// SPDX-License-Identifier: Apache-2.0
//
// Reading a file whole.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// @param kind  what the file is taken for, as in "profile"
/// @throws InputError when it can't be read or is too large to be that
std::vector<uint8_t> readFile(const std::string& path, const std::string& kind);

}  // namespace lumoxa_tool
