// SPDX-License-Identifier: Apache-2.0
//
// Patches in the order that the gray tag has them in.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace lumoxa_tool {

/// Layout field of the gray tag.
inline constexpr uint32_t kGrayGrids = 0, kGrayRamp = 2;
/// Steps that L* is inverted on; tables of others are resampled.
inline constexpr uint32_t kBestGraySteps = 16;

struct GrayTable {
    uint32_t points = 0;  ///< grid points of each companion, or length of the ramp
    uint32_t steps = 0;
    uint32_t layout = kGrayGrids;
    std::vector<std::array<double, 3>> xyz;  ///< Y = 1 for a perfect white
    std::array<double, 3> paper = {};
};

/// Reads patches in any order and sorts them. Patches that occur repeatedly are averaged.
///
/// @param range  the device value of full ink
/// @throws InputError for a table that can't be read, or whose patches are not those of a tag: it
///         names the first one that is missing or too many
GrayTable readGrayTable(const std::string& path, double range);

}  // namespace lumoxa_tool
