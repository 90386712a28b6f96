// SPDX-License-Identifier: Apache-2.0
#include "tools/display_colorimetry.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Vector = std::array<double, 3>;
using Matrix = std::array<Vector, 3>;  // rows

constexpr double kFixedOne = 65536.0;

// Lam's cone responses, sharpened: the linear Bradford transform of ICC.1, annex E.
constexpr Matrix kBradford = {
    {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};

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
        throw UsageError("--white: x, y and 1 - x - y must be above 0, else it is no colour");
    }
    return {xyz[0] / xyz[1], 1.0, xyz[2] / xyz[1]};
}

// XYZ of red, green and blue at full drive, which add up to the white.
Matrix primariesXyz(const DisplayColorimetry& colorimetry, const Vector& white) {
    constexpr double kLeastArea = 1e-6;  // twice that of the triangle; sRGB has 0.22
    Matrix primaries;
    for (size_t i = 0; i < 3; ++i) {
        if (colorimetry.primaries[i].y == 0) {
            throw UsageError("--primaries: with y = 0 a primary has no luminance");
        }
        primaries[i] = chromaticities(colorimetry.primaries[i]);
    }
    if (!(std::abs(determinant(primaries)) > kLeastArea)) {
        throw UsageError("--primaries: the three lie on a line and mix to no other colours");
    }
    const Vector amounts = multiply(inverse(transposed(primaries)), white);
    for (size_t i = 0; i < 3; ++i) {
        if (!(amounts[i] > 0)) {
            throw UsageError(
                "--white: lies outside the triangle of the primaries, which can't mix it");
        }
        for (double& value : primaries[i])
            value *= amounts[i];
    }
    return primaries;
}

// ICC.1, annex E: the cone responses to the white become those to D50.
Matrix adaptationToD50(const Vector& white) {
    const Vector from = multiply(kBradford, white);
    if (*std::min_element(from.begin(), from.end()) <= 0) {
        throw UsageError("--white: is too far from any white to adapt from");
    }
    const Vector to =
        multiply(kBradford, {kD50[0] / kFixedOne, kD50[1] / kFixedOne, kD50[2] / kFixedOne});
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

int32_t rounded(double value) {
    constexpr double kFixedRange = 32768.0;
    if (!(std::abs(value) < kFixedRange - 1)) {
        throw UsageError("the chromaticities lead to numbers that no profile can hold");
    }
    return static_cast<int32_t>(std::lround(value * kFixedOne));
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

}  // namespace

DisplayMatrix displayMatrix(const DisplayColorimetry& colorimetry) {
    const Vector white = whiteXyz(colorimetry.white);
    const Matrix adaptation = adaptationToD50(white);
    Matrix adapted = primariesXyz(colorimetry, white);
    for (Vector& xyz : adapted)
        xyz = multiply(adaptation, xyz);
    DisplayMatrix result;
    for (size_t i = 0; i < 3; ++i) {
        std::transform(adaptation[i].begin(), adaptation[i].end(), result.adaptation[i].begin(),
                       rounded);
        const FixedXyz component = roundedTo(kD50[i], transposed(adapted)[i]);
        for (size_t c = 0; c < 3; ++c)
            result.colorants[c][i] = component[c];
    }
    return result;
}

}  // namespace lumoxa_tool
