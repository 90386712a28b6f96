// SPDX-License-Identifier: Apache-2.0
#include "convert/colorimetry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "base/fault.h"

namespace lumoxa::engine {
namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;  // rows

// Sharpened cone responses: the linear Bradford transform (ICC.1:2010, annex E).
constexpr Matrix kBradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};

[[noreturn]] void refuse(const char* sentence) {
    throw FaultError(icErrInvalid, sentence);
}

Vector multiply(const Matrix& m, const Vector& v) {
    Vector result;
    for (size_t r = 0; r < 3; ++r)
        result[r] = m[r][0] * v[0] + m[r][1] * v[1] + m[r][2] * v[2];
    return result;
}

Matrix transposed(const Matrix& m) {
    Matrix result;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            result[r][c] = m[c][r];
    }
    return result;
}

double cofactor(const Matrix& m, size_t r, size_t c) {
    const size_t r1 = (r + 1) % 3, r2 = (r + 2) % 3, c1 = (c + 1) % 3, c2 = (c + 2) % 3;
    return m[r1][c1] * m[r2][c2] - m[r1][c2] * m[r2][c1];
}

double determinant(const Matrix& m) {
    return m[0][0] * cofactor(m, 0, 0) + m[0][1] * cofactor(m, 0, 1) + m[0][2] * cofactor(m, 0, 2);
}

Matrix inverse(const Matrix& m) {
    Matrix result;
    for (size_t r = 0; r < 3; ++r) {
        for (size_t c = 0; c < 3; ++c)
            result[r][c] = cofactor(m, c, r) / determinant(m);
    }
    return result;
}

// x, y and z = 1 - x - y (CIE 15, 7.3): XYZ of a colour whose X, Y and Z add up to 1.
Vector chromaticities(const Chromaticity& color) {
    return {color.x, color.y, 1.0 - color.x - color.y};
}

Vector whiteXyz(const Chromaticity& white) {
    const Vector xyz = chromaticities(white);
    if (*std::min_element(xyz.begin(), xyz.end()) <= 0) {
        refuse("x, y and 1 - x - y of a white are above 0, else it is no colour");
    }
    return {xyz[0] / xyz[1], 1.0, xyz[2] / xyz[1]};
}

// XYZ of red, green and blue at full drive, which add up to the white.
Matrix primariesXyz(const DisplayColorimetry& colorimetry, const Vector& white) {
    constexpr double kLeastArea = 1e-6;  // twice that of the triangle; sRGB has 0.22
    Matrix primaries;
    for (size_t i = 0; i < 3; ++i) {
        if (colorimetry.primaries[i].y == 0) {
            refuse("a primary with y = 0 has no luminance");
        }
        primaries[i] = chromaticities(colorimetry.primaries[i]);
    }
    if (!(std::abs(determinant(primaries)) > kLeastArea)) {
        refuse("three primaries on a line mix to no other colours");
    }
    const Vector amounts = multiply(inverse(transposed(primaries)), white);
    for (size_t i = 0; i < 3; ++i) {
        if (!(amounts[i] > 0)) {
            refuse("the white lies outside the triangle of the primaries, which can't mix it");
        }
        for (double& value : primaries[i])
            value *= amounts[i];
    }
    return primaries;
}

// ICC.1:2010, annex E: the cone responses to the white become those to D50.
Matrix adaptationToD50(const Vector& white) {
    const Vector from = multiply(kBradford, white);
    if (*std::min_element(from.begin(), from.end()) <= 0) {
        refuse("the white is too far from any white to adapt from");
    }
    const Vector to = multiply(
        kBradford, {kD50Xyz[0] / kFixedOne, kD50Xyz[1] / kFixedOne, kD50Xyz[2] / kFixedOne});
    Matrix scaled = kBradford;
    for (size_t r = 0; r < 3; ++r) {
        for (double& value : scaled[r])
            value *= to[r] / from[r];
    }
    const Matrix back = inverse(kBradford);
    Matrix columns;
    for (size_t c = 0; c < 3; ++c)
        columns[c] = multiply(back, transposed(scaled)[c]);
    return transposed(columns);
}

// A range that leaves room for sums of three.
int32_t rounded(double value) {
    constexpr double kMost = 10000;
    if (!(std::abs(value) < kMost)) {
        refuse("the chromaticities lead to numbers that no profile can hold");
    }
    return toFixed16(value);
}

// Rounds numbers that add up to `sum` so that they still do: where rounding left a difference, the
// number that is furthest off in that direction takes it.
FixedXyz roundedTo(int32_t sum, const Vector& exact) {
    FixedXyz result;
    std::transform(exact.begin(), exact.end(), result.begin(), rounded);
    for (int32_t left = sum - result[0] - result[1] - result[2]; left != 0;) {
        const int32_t step = left > 0 ? 1 : -1;
        const auto lack = [&](size_t i) { return step * (exact[i] * kFixedOne - result[i]); };
        size_t most = 0;
        for (size_t i = 1; i < 3; ++i)
            most = lack(i) > lack(most) ? i : most;
        result[most] += step;
        left -= step;
    }
    return result;
}

std::array<FixedXyz, 3> rounded(const Matrix& matrix) {
    std::array<FixedXyz, 3> rows;
    for (size_t r = 0; r < 3; ++r)
        std::transform(matrix[r].begin(), matrix[r].end(), rows[r].begin(), toFixed16);
    return rows;
}

}  // namespace

std::array<FixedXyz, 3> bradfordToD50(const Chromaticity& white) {
    return rounded(adaptationToD50(whiteXyz(white)));
}

DisplayMatrix displayMatrix(const DisplayColorimetry& colorimetry) {
    const Vector white = whiteXyz(colorimetry.white);
    const Matrix adaptation = adaptationToD50(white);
    Matrix adapted = primariesXyz(colorimetry, white);
    for (Vector& xyz : adapted)
        xyz = multiply(adaptation, xyz);
    DisplayMatrix result;
    result.adaptation = rounded(adaptation);
    for (size_t i = 0; i < 3; ++i) {
        const FixedXyz component = roundedTo(kD50Xyz[i], transposed(adapted)[i]);
        for (size_t c = 0; c < 3; ++c)
            result.colorants[c][i] = component[c];
    }
    return result;
}

}  // namespace lumoxa::engine
