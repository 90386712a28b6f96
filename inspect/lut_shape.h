// SPDX-License-Identifier: Apache-2.0
//
// Sizes and elements of a LUT tag, read from the tag itself.
#pragma once

#include <cstdint>
#include <vector>

#include "inspect/byte_view.h"

namespace lumoxa::inspection {

/// One element of a lutAtoB or lutBtoA tag.
struct LutElement {
    const char* name;  ///< "A curves", "CLUT", "M curves", "matrix", "B curves"
    uint64_t field;    ///< position of its offset in the tag
    uint64_t at;       ///< that offset, 0 for an element that is absent
    uint64_t bytes;    ///< what it takes at least
};

struct LutShape {
    uint32_t type = 0;
    bool known = false;  ///< the type is one of lut8, lut16, lutAtoB, lutBtoA
    uint32_t inputs = 0;
    uint32_t outputs = 0;
    std::vector<uint32_t> grid;  ///< points of each input; empty without a CLUT
    uint32_t inputEntries = 0;   ///< of lut8 and lut16
    uint32_t outputEntries = 0;
    uint32_t precision = 0;            ///< bits of a CLUT value
    bool matrixActs = false;           ///< lut8 and lut16: the matrix is not the identity
    std::vector<LutElement> elements;  ///< of lutAtoB and lutBtoA in the order of processing
    /// What the tag takes at least; what can't fit any file stays at 2^40.
    uint64_t bytes = 0;

    bool isAB() const { return !elements.empty(); }
};

LutShape lutShape(ByteView tag);

}  // namespace lumoxa::inspection
