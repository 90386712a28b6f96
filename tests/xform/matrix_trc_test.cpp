// SPDX-License-Identifier: Apache-2.0
//
// Curves and colorants as they come out of profiles.
#include <cmath>
#include <functional>

#include "tests/support/reference_lut.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using Curve = std::function<double(double)>;  // 0..1 to 0..65535

OwnedXform unit(const std::vector<Bytes>& curves, uint32_t transType) {
    return requested(rgbProfile(curves, "scnr", /*unitMatrix=*/true), 0, transType);
}

Samples everySample(size_t channels, uint32_t first, uint32_t step) {
    Samples pixels;
    for (uint32_t v = first; v <= 65535; v += step)
        pixels.insert(pixels.end(), channels, uint16_t(v));
    return pixels;
}

// The curves must come out as if sampled at 4096 steps and read linearly between them.
void expectCurves(const OwnedXform& xform, const std::vector<Curve>& curves, double tolerance) {
    const Samples in = everySample(3, 0, 85), out = converted(xform.get(), in);
    for (size_t i = 0; i < in.size(); ++i) {
        const double p = in[i] / 65535.0 * 4095, k = std::min(std::floor(p), 4094.0);
        const double low = curves[i % 3](k / 4095), high = curves[i % 3]((k + 1) / 4095);
        ASSERT_NEAR(out[i], std::clamp(low + (high - low) * (p - k), 0.0, 65535.0), tolerance)
            << in[i] << " channel " << i % 3;
    }
}

Curve gamma(double exponent) {
    return [=](double x) { return 65535 * std::pow(x, exponent); };
}

TEST(MatrixTrc, KeepsTheFormOfCurves) {
    const std::vector<Bytes> curves = {curveTag({563}), curveTag({256}), curveTag({461})};
    expectCurves(unit(curves, icDeviceToPcs), {gamma(563 / 256.0), gamma(1), gamma(461 / 256.0)},
                 0.6);
    expectCurves(unit(curves, icPcsToDevice), {gamma(256 / 563.0), gamma(1), gamma(256 / 461.0)},
                 0.6);
    // The constants of types 2 and 4 and the line below the break stand beside the scaled power
    // without being scaled themselves; type 4 is not scaled at all.
    const std::vector<double> parameters[] = {{2.5},
                                              {2, 1.25, -0.25},
                                              {2, 0.5, -0.25, 300},
                                              {2, 0.9375, 0.0625, 1000, 0.5},
                                              {1.5, 1, 0, 3000, 0.5, 200, 100}};
    for (uint32_t function = 0; function < 5; ++function) {
        SCOPED_TRACE(function);
        const std::vector<double>& p = parameters[function];
        const Curve curve = [&](double x) {
            return parametric(function, p, x, function < 4 ? 65535 : 1, 1);
        };
        const Bytes tag = parametricTag(function, p);
        // Beside a gamma in red: each channel has a form of its own.
        expectCurves(unit({curveTag({512}), tag, tag}, icDeviceToPcs), {gamma(2), curve, curve},
                     0.7);
    }
}

TEST(MatrixTrc, InvertsSampledCurves) {
    std::vector<Bytes> curves;
    Samples nodes = everySample(3, 0, 257), values(nodes.size());
    for (const double exponent : {1.5, 2.0, 0.7}) {
        std::vector<uint16_t> t;
        for (size_t i = 0; i < 256; ++i) {
            t.push_back(uint16_t(65535 * std::pow(double(i) / 255, exponent) + 0.5));
            values[3 * i + curves.size()] = t.back();
        }
        curves.push_back(curveTag(t));
    }
    const OwnedXform forward = unit(curves, icDeviceToPcs), back = unit(curves, icPcsToDevice);
    expectNear(forward, nodes, values, 1);
    // Each entry of the inverse table is where the curve has that value, up to its steepness.
    expectNear(forward, converted(back.get(), nodes), nodes, 4);
}

TEST(MatrixTrc, InvertsCurvesThatStopShort) {
    for (const auto& [black, white] : {std::pair{0, 60000}, {3000, 65535}, {65000, 5000}}) {
        std::vector<uint16_t> line;
        for (int i = 0; i < 256; ++i)
            line.push_back(static_cast<uint16_t>(black + (white - black) * i / 255));
        const uint16_t atBlack = black < white ? 0 : 65535;
        const uint16_t atWhite = static_cast<uint16_t>(65535 - atBlack);
        expectNear(unit({curveTag(line)}, icPcsToDevice), {0, 0, 0, 65535, 65535, 65535},
                   {atBlack, atBlack, atBlack, atWhite, atWhite, atWhite}, 1);
    }
}

TEST(MatrixTrc, HasColorantsForColumns) {
    const double colorants[3][3] = {
        {0.4361, 0.2225, 0.0139}, {0.3851, 0.7169, 0.0971}, {0.1431, 0.0606, 0.7141}};
    const ProfileBytes linear = rgbProfile({curveTag({})}, "scnr");
    const OwnedXform forward = requested(linear, 0, icDeviceToPcs),
                     back = requested(linear, 0, icPcsToDevice);
    for (size_t c = 0; c < 3; ++c) {
        Samples in(3);
        in[c] = 65535;
        const Samples out = converted(forward.get(), in);
        for (size_t r = 0; r < 3; ++r)
            EXPECT_NEAR(out[r], 32768 * colorants[c][r], 1);
        expectNear(back, out, in, 8);
    }
    ProfileBytes singular("scnr");
    for (const char* channel : {"r", "g", "b"}) {
        singular.addTag(channel + std::string("XYZ"), xyzTag(0.25, 0.5, 0.25));
        singular.addTag(channel + std::string("TRC"), curveTag({}));
    }
    EXPECT_EQ(converted(requested(singular, 0, icPcsToDevice).get(), {9999, 65535, 3}),
              (Samples{0, 0, 0}));
}

TEST(MatrixTrc, TakesGrayToEitherConnectionSpace) {
    for (const bool lab : {true, false}) {
        const ProfileBytes squared =
            ProfileBytes("prtr", "GRAY", lab ? "Lab " : "XYZ ").addTag("kTRC", curveTag({512}));
        const Samples half = converted(requested(squared, 0, icDeviceToPcs).get(), {32768});
        EXPECT_NEAR(half[lab ? 0 : 1], (lab ? 65280 : 32768) * 0.25, 2);
        expectNear(requested(squared, 0, icPcsToDevice), half, {32768}, 8);
    }
}

// 8-bit results are 16-bit ones divided by 256, cut to 255 going to the connection space, wrapped
// going to the device.
TEST(MatrixTrc, EightBitWhiteClipsToTheConnectionSpaceAndWrapsToTheDevice) {
    const std::vector<Bytes> straight = {curveTag({0, 65535})};
    const OwnedXform forward = unit(straight, icDeviceToPcs), back = unit(straight, icPcsToDevice);
    const Samples in = {0, 1, 254, 255, 64, 255}, words = {0, 257, 65278, 65535, 16448, 65535};
    EXPECT_EQ(converted(forward.get(), in, 8, 16), words);
    EXPECT_EQ(converted(back.get(), in, 8, 16), words);
    EXPECT_EQ(converted(forward.get(), in, 8, 8), (Samples{0, 1, 255, 255, 64, 255}));
    EXPECT_EQ(converted(back.get(), in, 8, 8), (Samples{0, 1, 255, 0, 64, 0}));
}

}  // namespace
}  // namespace lumoxa_test
