// SPDX-License-Identifier: Apache-2.0
//
// A printer with three inks, by formula: the Yule-Nielsen modified Neugebauer model (Neugebauer
// 1937; Yule and Nielsen 1951). The eight combinations of solid inks have the paper's XYZ times the
// transmittances of the inks in them; a halftone is their mean by area (Demichel 1924), taken of
// the n-th roots.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <vector>

namespace lumoxa_test {

class InkPrinter {
  public:
    using Triple = std::array<double, 3>;

    /// XYZ, Y = 1 for a perfect white, of three channels 0..65535: black, and two toners.
    Triple xyz(double black, double first, double second) const {
        const double cover[3] = {black / 65535, first / 65535, second / 65535};
        Triple roots = {};
        for (unsigned inks = 0; inks < 8; ++inks) {
            double area = 1;
            for (unsigned i = 0; i < 3; ++i)
                area *= (inks >> i & 1) != 0 ? cover[i] : 1 - cover[i];
            for (size_t c = 0; c < 3; ++c)
                roots[c] += area * std::pow(solid(inks, c), 1 / kYuleNielsen);
        }
        for (double& value : roots)
            value = std::pow(value, kYuleNielsen);
        return roots;
    }

    /// CIE Lab relative to the paper.
    Triple lab(const Triple& xyz) const {
        const auto f = [](double t) {
            return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116;
        };
        const double x = f(xyz[0] / kPaper[0]);
        const double y = f(xyz[1] / kPaper[1]);
        const double z = f(xyz[2] / kPaper[2]);
        return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
    }

    /// Patches of the gray tag: for each step a grid of the toners, then paper and black.
    std::vector<Triple> patches(int n, int steps) const {
        std::vector<Triple> result;
        for (int s = 1; s <= steps; ++s) {
            for (int j = 0; j < n; ++j) {
                for (int k = 0; k < n; ++k)
                    result.push_back(xyz(65535.0 * s / (steps + 1), 65535.0 * j / (n - 1),
                                         65535.0 * k / (n - 1)));
            }
        }
        result.push_back(xyz(0, 0, 0));
        result.push_back(xyz(65535, 0, 0));
        return result;
    }

  private:
    static constexpr double kYuleNielsen = 2;
    static constexpr Triple kPaper = {0.82, 0.85, 0.72};
    // A black that leans a little to yellow-green, and two light toners, magenta and blue, that
    // make up for it. The more a black leans, the steeper the toners come in from black to the last
    // step.
    static constexpr Triple kInk[3] = {
        {0.0248, 0.0250, 0.0220}, {0.85, 0.74, 0.86}, {0.76, 0.81, 0.96}};

    static double solid(unsigned inks, size_t channel) {
        double value = kPaper[channel];
        for (unsigned i = 0; i < 3; ++i)
            if ((inks >> i & 1) != 0) value *= kInk[i][channel];
        return value;
    }
};

}  // namespace lumoxa_test
