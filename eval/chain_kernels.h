// SPDX-License-Identifier: Apache-2.0
//
// Kernels of stages that stand in chains only: the white scaling of absolute colorimetry ('AbsX'),
// and the way between a perceptual rendering, whose L* runs from 0 to 100, and the range between
// the black and the white of a device ('PtoR', 'RtoP'). 16-bit samples.
#pragma once

#include <cstddef>
#include <cstdint>

#include "lut/curve_mask.h"

namespace lumoxa {

/// Two whites, XYZ with 1.0 = 32768. A stage multiplies by to / from.
struct WhiteScaling {
    uint16_t from[3];
    uint16_t to[3];
};

/// The lightest and the darkest colour of a device in the 16-bit Lab encoding. Shared by the
/// transform that they were found with and by the stages that map between them.
struct icBlackWhite_t {
    uint16_t white[3];
    uint16_t black[3];
};

/// 'AbsX': media-relative and absolute XYZ differ by the ratio of the media white and the
/// connection-space white.
void scaleWhite(const WhiteScaling& s, const uint16_t* source, uint16_t* destination,
                ptrdiff_t pixels, CurveMask = {});

/// 'PtoR': L* 0..100 to the device's range, a* and b* shifted along.
void squeezeIntoDevice(const icBlackWhite_t& s, const uint16_t* source, uint16_t* destination,
                       ptrdiff_t pixels, CurveMask = {});

/// 'RtoP': the device's range to L* 0..100, what lies outside limited.
void stretchFromDevice(const icBlackWhite_t& s, const uint16_t* source, uint16_t* destination,
                       ptrdiff_t pixels, CurveMask = {});

}  // namespace lumoxa
