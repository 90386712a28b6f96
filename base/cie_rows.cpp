// SPDX-License-Identifier: Apache-2.0
//
// CIE 15, 8.2.1, with its constants as fractions, so that the two segments of the function meet:
//
//   f(t) = t^(1/3) above (6/29)^3, else (841/108) t + 4/29
//   L* = 116 f(Y/Yn) - 16, a* = 500 (f(X/Xn) - f(Y/Yn)), b* = 200 (f(Y/Yn) - f(Z/Zn))
//
// In terms of epsilon = 216/24389 and kappa = 24389/27: (6/29)^3 is epsilon, 841/108 kappa / 116.
// The root is that of a quotient, not of a product with a reciprocal: 1 for the white.
#include "base/cie_rows.h"

#include "base/elementary.h"

namespace lumoxa {
namespace {

constexpr double kCubeAbove = 216.0 / 24389;
constexpr double kRootAbove = 6.0 / 29;
constexpr double kSlope = 841.0 / 108;
constexpr double kInverseSlope = 108.0 / 841;
constexpr double kOffset = 4.0 / 29;

inline double lightnessFunction(float v, float white) {
    const auto scale = static_cast<double>(white);
    const double line = static_cast<double>(v) * (kSlope / scale) + kOffset;
    const double t = static_cast<double>(elementary::positive(v)) / scale;
    return elementary::select(elementary::atLeastMask(kCubeAbove, t), line,
                              elementary::positiveCubeRoot(t));
}

inline float inverseFunction(double f, float white) {
    const double t = elementary::select(elementary::atLeastMask(kRootAbove, f),
                                        (f - kOffset) * kInverseSlope, f * f * f);
    return static_cast<float>(t * static_cast<double>(white));
}

}  // namespace

void xyzToLab(float* x, float* y, float* z, int count) {
    for (int i = 0; i < count; ++i) {
        const double fx = lightnessFunction(x[i], kWhiteX);
        const double fy = lightnessFunction(y[i], kWhiteY);
        const double fz = lightnessFunction(z[i], kWhiteZ);
        x[i] = static_cast<float>(116.0 * fy - 16.0);
        y[i] = static_cast<float>(500.0 * (fx - fy));
        z[i] = static_cast<float>(200.0 * (fy - fz));
    }
}

void labToXyz(float* lightness, float* a, float* b, int count) {
    for (int i = 0; i < count; ++i) {
        const double fy = (static_cast<double>(lightness[i]) + 16.0) / 116.0;
        const double fx = fy + static_cast<double>(a[i]) / 500.0;
        const double fz = fy - static_cast<double>(b[i]) / 200.0;
        lightness[i] = inverseFunction(fx, kWhiteX);
        a[i] = inverseFunction(fy, kWhiteY);
        b[i] = inverseFunction(fz, kWhiteZ);
    }
}

}  // namespace lumoxa
