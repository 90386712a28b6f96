// SPDX-License-Identifier: Apache-2.0
//
// The white scaling of absolute colorimetry as a stage of a chain, kind 'AbsX' (ICC.1, annex D:
// media-relative and absolute XYZ differ by the ratio of media white and connection-space white).
#pragma once

#include "xform/xform_object.h"

namespace lumoxa {

/// What a stage does, and the intent that its record bears: a stage that has left an absolute
/// result behind is how the next transform of a chain knows to bring it back.
enum class AbsoluteMode : uint32_t { kToRelative = 1, kToAbsolute = 3 };

/// Makes a stage that scales XYZ by second / first. Throws std::bad_alloc.
XformPtr makeAbsoluteStage(const uint16_t* first, const uint16_t* second, AbsoluteMode mode);

/// The kernel of 'AbsX', 16-bit XYZ, over all cores; `state` is the stage's own record.
void convertAbsolute(const void* state, const void* source, void* destination, int pixels);

}  // namespace lumoxa
