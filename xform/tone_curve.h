// SPDX-License-Identifier: Apache-2.0
//
// Tone curve and XYZ tags of matrix/TRC profiles, read from wherever the profile keeps its tags.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "lut/parametric_curve.h"
#include "profile/profile_object.h"

namespace lumoxa {

inline constexpr uint32_t kXyzTagSize = 20;       // type, reserved, three numbers
inline constexpr double kGammaStep = 0.00390625;  // of a u8Fixed8 gamma entry: 1 / 256

/// A tone curve tag: 'curv' with its entries (none: identity, one: a u8Fixed8 gamma, more: samples
/// at equal steps) or 'para' with its parameters.
struct SampledCurve {
    bool parametric = false;
    ParametricCurve function;
    std::vector<uint16_t> entries;

    bool sampled() const { return !parametric && entries.size() >= 2; }
};

/// Reads a curve tag. icErrNoTag without it, icErrTagType when it holds neither type or a function
/// of an unknown type, icErrRead when its bytes are fewer than it declares; a tag reader's code.
int readToneCurve(const icProfileInternal& profile, icTagSignature signature, SampledCurve& out);

/// Reads an XYZ tag as s15Fixed16 numbers. Its type signature is not checked: profiles in use name
/// other types for the same layout.
int readXyz(const icProfileInternal& profile, icTagSignature signature,
            std::array<int32_t, 3>& out);

/// Samples a parametric curve on the scale of curve tables, 0..65535.
///
/// The constants c and e of types 2 and 4, and the linear segments of types 3 and 4, are not
/// brought to that scale, nor is any part of type 4: those segments end near 0, and type 4 as a
/// whole. All types but 0 are clipped to 0..65535.
void sampleParametric(const ParametricCurve& curve, int entries, float* table);

/// Fills a table with 65535 x^gamma at equal steps of x from 0 to 1.
void sampleGamma(double gamma, int entries, float* table);

/// Fills a table of `entries` with the curve's values, 0..65535. A sampled curve is copied entry by
/// entry and, where it is shorter, extended with its last entry.
void sampleToneCurve(const SampledCurve& curve, int entries, float* table);

/// Fills `inverse` with the inverse of the piecewise-linear curve through `table` on the same
/// number of entries, values on the scale 0..65535. What the curve does not reach becomes an end of
/// it; where the search does not converge, the entry before is used again.
void invertCurve(const float* table, int entries, float* inverse);

}  // namespace lumoxa
