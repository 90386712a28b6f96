// SPDX-License-Identifier: Apache-2.0
//
// Stages between a perceptual rendering, whose L* runs from 0 to 100, and the range between the
// black and the white of a device, kinds 'PtoR' and 'RtoP'.
#pragma once

namespace lumoxa {

/// The kernel of 'PtoR', 16-bit Lab, over all cores; `state` is an icBlackWhite_t.
void convertPerceptualToRelative(const void* state, const void* source, void* destination,
                                 int pixels);

/// The kernel of 'RtoP', likewise.
void convertRelativeToPerceptual(const void* state, const void* source, void* destination,
                                 int pixels);

}  // namespace lumoxa
