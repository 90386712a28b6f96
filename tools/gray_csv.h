// SPDX-License-Identifier: Apache-2.0
//
// Measured patches of a gray device in a table of text.
#pragma once

#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"

namespace lumoxa_tool {

/// Reads a table with the columns main, X, Y, Z and, for grids, first and second; where these are
/// missing, the companions follow the main channel.
///
/// @param range  the device value of full ink
/// @throws InputError for a file that can't be read or a line that is no patch
std::vector<lumoxa::GrayPatch> readGrayCsv(const std::string& path, double range);

}  // namespace lumoxa_tool
