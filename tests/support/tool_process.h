// SPDX-License-Identifier: Apache-2.0
//
// Programs run as a shell or another program runs them, on Linux and on Windows.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace lumoxa_test {

/// How a program ended.
struct ProcessEnd {
    int exitCode = -1;
    int signal = 0;          ///< that it died of; 0 on Windows
    long peakKilobytes = 0;  ///< of memory; 0 on Windows
};

/// A program that runs, until waitFor() has its end.
using Process = intptr_t;

/// Starts a program in a folder, where the files stdin, stdout and stderr are its streams.
/// @param words        in UTF-8: the program, then its arguments, which have no quotes in them
/// @param largestFile  where the files end that it writes, as on a disk that is full there; 0:
///                     nowhere, and always so on Windows
Process start(const std::vector<std::string>& words, const std::filesystem::path& folder,
              uint64_t largestFile = 0);

ProcessEnd waitFor(Process process);

}  // namespace lumoxa_test
