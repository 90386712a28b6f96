// SPDX-License-Identifier: Apache-2.0
//
// One synthetic profile of every kind that the accurate engine reads.
#pragma once

#include <map>
#include <string>

#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

/// By name: displays ("gamma", "parametric", "table"), gray ("gray", "grayLab", "patches"), LUTs
/// ("proofer" lut8 with XYZ, "press" CMYK lut16, "six" inks, "ab" RGB and "abPress" CMYK of
/// version 4), "link", "abstract".
const std::map<std::string, Bytes>& profileZoo();

/// A grid whose outputs follow the inputs in turn, or run against them, with some noise.
LutContent noisyGrid(uint32_t inputs, uint32_t outputs, uint32_t points, bool against);

/// The profile with another version: 0x04200000 for 4.2.
Bytes withVersion(Bytes profile, uint32_t version);

/// A device link, or another profile that is one tag.
Bytes oneTagProfile(const std::string& deviceClass, const std::string& space,
                    const std::string& pcs, const Bytes& tag, const std::string& name = "A2B0");

}  // namespace lumoxa_test
