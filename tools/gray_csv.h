// SPDX-License-Identifier: Apache-2.0
//
// Measured patches of a gray device in a table of text.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// Device values of a patch: main channel, first and second companion.
using GrayChannels = std::array<double, 3>;

struct GrayPatch {
    size_t line = 0;             ///< in the file, from 1
    GrayChannels channels = {};  ///< 0..1
    std::array<double, 3> xyz = {};
};

struct GrayCsv {
    std::vector<GrayPatch> patches;  ///< in the file's order
    bool companions = false;  ///< the file has columns for them, else they follow the main channel
};

/// Reads a table with the columns main, X, Y, Z and, for grids, first and second.
///
/// @param range  the device value of full ink
/// @throws InputError for a file that can't be read or a line that is no patch
GrayCsv readGrayCsv(const std::string& path, double range);

/// A fault in a line of the file, ready to throw.
[[noreturn]] void refuseGrayLine(const std::string& path, size_t line, const std::string& fault,
                                 const std::string& remedy);

}  // namespace lumoxa_tool
