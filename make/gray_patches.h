// SPDX-License-Identifier: Apache-2.0
//
// Measured patches of a gray print device in the order that its tag has them in (docs/gray.md).
#pragma once

#include <array>
#include <cstdint>
#include <vector>

namespace lumoxa::engine {

struct MeasuredPatch {
    std::array<double, 3> device = {};  ///< main channel, first and second companion; 0 is paper
    std::array<double, 3> xyz = {};     ///< Y = 1 or, for all patches, Y = 100 for a perfect white
};

/// Layout field of the tag.
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

/// Sorts patches that come in any order. Where all three channels of every patch are equal, they
/// are a ramp, else grids of the companions at even steps of the main channel, paper and black.
/// Patches that occur repeatedly are averaged.
///
/// @param range  device value of full ink
/// @throws FaultError for patches that are not those of a tag: it names the first one that is
///         missing, too many or no number
GrayTable sortedPatches(const std::vector<MeasuredPatch>& patches, double range);

}  // namespace lumoxa::engine
