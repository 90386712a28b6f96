// SPDX-License-Identifier: Apache-2.0
//
// The profile of a gray print device of three channels out of measured patches.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "make/gray_patches.h"

namespace lumoxa::engine {

struct GrayPrintForm {
    std::vector<MeasuredPatch> patches;  ///< in any order, as sortedPatches takes them
    double range = 1;                    ///< device value of full ink
    std::string description, copyright;  ///< ASCII
};

/// The bytes of a version 2.4 profile of class 'prtr', created now, with the patches, and with one
/// tone curve for software that knows nothing of them.
/// @throws FaultError as sortedPatches and textTagFor do, and for patches that no tones can be
///         fitted to
std::vector<uint8_t> makeGrayPrint(const GrayPrintForm& print);

}  // namespace lumoxa::engine
