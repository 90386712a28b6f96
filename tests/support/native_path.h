// SPDX-License-Identifier: Apache-2.0
//
// File names for the C runtime: on Windows it takes them in the code page of the process, which has
// not every character of a name.
#pragma once

#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>

namespace lumoxa_test {

/// The path as std::fopen takes it; nothing where the code page can't express it.
std::optional<std::string> pathForFopen(const std::filesystem::path& path);

/// Opens a file of any name for reading; null when it can't be opened.
FILE* openForReading(const std::filesystem::path& path);

}  // namespace lumoxa_test
