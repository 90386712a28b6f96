// SPDX-License-Identifier: Apache-2.0
//
// What the engine tells of a conversion, as lines of a report.
#pragma once

#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"
#include "tools/named_profile.h"

namespace lumoxa_tool {

/// One line for each profile of the chain, of which the labels are the first words.
std::string chainLines(const lumoxa::Conversion& conversion, const std::vector<NamedProfile>& chain,
                       const std::vector<std::string>& labels);

/// How pixels are converted and how exactly, and the black points that were matched.
std::string planLines(const lumoxa::Conversion& conversion);

/// A number with that many digits behind the point.
std::string rounded(double value, int digits);

/// A line of a report.
std::string reportLine(const std::string& label, const std::string& text);

/// The grid of a device link that converts alone: "grid 33 x 33 x 33, tetrahedral".
std::string linkGridText(const lumoxa::Conversion& link);

}  // namespace lumoxa_tool
