// SPDX-License-Identifier: Apache-2.0
//
// Names of files, and reading a file whole.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// The path of a name in UTF-8, as texts of the tool are: on Windows std::filesystem would widen
/// its bytes one by one. MinGW's path::string() gives UTF-8 back.
inline std::filesystem::path pathOf(const std::string& name) {
    return std::u8string(name.begin(), name.end());
}

/// @param kind  what the file is taken for, as in "profile"
/// @throws InputError when it can't be read or is too large to be that
std::vector<uint8_t> readFile(const std::string& path, const std::string& kind);

}  // namespace lumoxa_tool
