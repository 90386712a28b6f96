// SPDX-License-Identifier: Apache-2.0
//
// Powers that come out alike everywhere. Gamma curves and the cube roots of CIE 15 go through them;
// the functions of C libraries differ in their last bits, and a sample that lies on the edge of
// rounding would differ with them.
#pragma once

namespace lumoxa {

/// `x` to the power `y`, in plain arithmetic and so with the same bits on every machine. The error
/// is below 0.51 units in the last place, for a subnormal result below 0.76. Infinities, zeros,
/// negative bases and what is not a number give what C's pow gives (ISO C, F.10.4.4).
double power(double x, double y);

inline float power(float x, float y) {
    return static_cast<float>(power(static_cast<double>(x), static_cast<double>(y)));
}

}  // namespace lumoxa
