// SPDX-License-Identifier: Apache-2.0
//
// The profiles that the system's packages have installed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumoxa_test {

/// Paths of all .icc and .icm files in the usual places, sorted, each file once however many
/// links lead to it. Empty where none is installed.
std::vector<std::string> realProfilePaths();

std::vector<uint8_t> fileBytes(const std::string& path);

/// The bytes of the installed profile whose path ends so. Throws where there is none.
std::vector<uint8_t> realProfile(const std::string& pathEnd);

}  // namespace lumoxa_test
