// SPDX-License-Identifier: Apache-2.0
//
// Curve elements sampled into 16-bit tables, and the adjustment of Lab curves between the two
// 16-bit Lab encodings: tags of ICC version 4 use 0..65535 for L* 0..100, the library (like version
// 2) 0..65280.
#pragma once

#include <cstdint>
#include <vector>

namespace lumoxa {

/// Samples a 'curv' element in host byte order at `entries` equal steps, in double precision: no
/// entry is the identity, one entry a gamma of entry / 256, more are interpolated linearly.
void icResampleCurv(const uint8_t* curve, int entries, uint16_t* destination);

/// Samples a 'para' element in host byte order at `entries` equal steps, in single precision.
/// Values are clipped to 0..65535 except those of type 0, which wrap; an unknown type leaves the
/// destination untouched.
void icSampleParaCurve(const uint8_t* curve, int entries, uint16_t* destination);

/// Stretches an input curve so that it takes the 0..65280 encoding of L*: the result reads the old
/// curve at 257/256 of each position and has at least 257 entries. An empty curve is the identity.
void icLabCurveToLegacy(std::vector<uint16_t>& table);

/// Scales an output curve to the 0..65280 encoding of L*, to legacy values in spite of its name. An
/// empty curve is the identity.
void icLabCurveFromLegacy(std::vector<uint16_t>& table);

}  // namespace lumoxa
