// SPDX-License-Identifier: Apache-2.0
//
// CIE XYZ to L*a*b* and back on 16-bit samples (CIE 15). The cube root lives in tables made once
// for a white, so a pixel costs three table reads and a few multiplications.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "lumoxa/evaluate.h"

namespace lumoxa {

/// The public records with the block that their table pointers lead into.
struct XyzToLabState : XyzToLab_t {
    std::unique_ptr<uint16_t[]> tables;
};
struct LabToXyzState : LabToXyz_t {
    std::unique_ptr<uint16_t[]> tables;
};

/// Makes a state without holders. Throws std::bad_alloc.
std::unique_ptr<XyzToLabState> makeXyzToLab(const uint16_t* white);

/// As makeXyzToLab. `fullScaleL`: source L* 0..100 is 0..65535 instead of 0..65280; a* and b* are
/// read alike. The way back has no such form: it writes 0..65280.
std::unique_ptr<LabToXyzState> makeLabToXyz(const uint16_t* white, bool fullScaleL);

}  // namespace lumoxa
