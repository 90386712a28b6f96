// SPDX-License-Identifier: Apache-2.0
//
// The exported matrix/TRC kernels on states made by hand.
#include <array>

#include <gtest/gtest.h>

#include "tests/support/reference_lut.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

using Tables = std::vector<std::vector<float>>;
constexpr uint16_t kUntouched = 0xA5A5;

struct State : trcMatrix_t {
    Tables tables;

    State(const char* in, const char* out, Tables t, std::array<float, 9> m = {})
        : trcMatrix_t{}, tables(std::move(t)) {
        inSpace = signature(in), outSpace = signature(out);
        std::copy(m.begin(), m.end(), matrix);
        hasCurves = !tables.empty();
        for (size_t c = 0; c < tables.size(); ++c) {
            curves[c] = tables[c].data();
            curveEntries = static_cast<int32_t>(tables[c].size());
        }
    }
    float curve(size_t c, float v, float top) const {
        return hasCurves ? lookup(tables[c], v * (float(curveEntries - 1) / top)) : v;
    }
    template <class V>
    float row(size_t r, const V& c) const {
        return matrix[3 * r + 1] * c[1] + matrix[3 * r] * c[0] + matrix[3 * r + 2] * c[2];
    }
};

template <class In>
Samples trcMatrix(const State& state, const std::vector<In>& in) {
    const size_t channels = state.inSpace == fourcc("GRAY") ? 1 : 3;
    Samples out(in.size() / channels * 3, kUntouched);
    icConvertTrcMatrix(&state, in.data(), out.data(), static_cast<int>(in.size() / channels));
    return out;
}

Samples matrixTrc(const State& state, const Samples& in) {
    Samples out(state.outSpace == fourcc("GRAY") ? in.size() / 3 : in.size());
    icConvertMatrixTrc(&state, in.data(), out.data(), static_cast<int>(in.size() / 3));
    return out;
}

TEST(MatrixTrcKernels, StrayFromTheFormulas) {
    for (const size_t entries : {0U, 2U, 256U, 4096U}) {
        SeededRandom random(1);
        Tables tables(entries == 0 ? 0 : 3, std::vector<float>(entries));
        for (auto& t : tables) {
            for (float& v : t)
                v = random.upTo(65535);
        }
        const State s("RGB ", "RGB ", tables,
                      {0.7f, 0.4f, -0.2f, -0.6f, 1.3f, 0.2f, 0.1f, 0.8f, 0.5f});
        const Samples in = random.samples(3001 * 3);
        const std::vector<uint8_t> bytes(in.begin(), in.end());
        Samples forward, forwardOfBytes, back;
        for (size_t i = 0; i < in.size(); ++i) {
            const size_t p = i / 3 * 3, r = i % 3;
            std::array<float, 3> words, small, raw;
            for (size_t c = 0; c < 3; ++c) {
                raw[c] = in[p + c];
                words[c] = s.curve(c, in[p + c], 65535);
                small[c] = s.curve(c, bytes[p + c], 255);
            }
            const auto stored = [](float v) {
                return uint16_t(std::clamp(v + 0.5f, 0.0f, 65535.0f));
            };
            forward.push_back(stored(s.row(r, words)));
            forwardOfBytes.push_back(stored(s.row(r, small)));
            back.push_back(stored(s.curve(r, std::clamp(s.row(r, raw), 0.0f, 65535.0f), 65535)));
        }
        EXPECT_EQ(trcMatrix(s, in), forward) << entries;
        EXPECT_EQ(trcMatrix(s, bytes), forwardOfBytes) << entries;
        EXPECT_EQ(matrixTrc(s, in), back) << entries;
    }
    const std::vector<float> over = {0, 65536.0f + 99};  // is stored modulo 65536
    const State wrapping("XYZ ", "RGB ", {over, over, over}, {1, 0, 0, 0, 1, 0, 0, 0, 1});
    EXPECT_EQ(matrixTrc(wrapping, {65535, 65535, 0}), (Samples{99, 99, 0}));
}

TEST(MatrixTrcKernels, ChangeGray) {
    using Bytes8 = std::vector<uint8_t>;
    const std::vector<float> ramp = {0, 65535}, wide = {-9000, 90000}, bent = {0, 10000, 60000};
    const State xyz("GRAY", "XYZ ", {ramp}), lab("GRAY", "Lab ", {ramp}),
        straight("GRAY", "Lab ", {});
    EXPECT_EQ(trcMatrix(xyz, Samples{65535, 0}), (Samples{31595, 32768, 27030, 0, 0, 0}));
    EXPECT_EQ(trcMatrix(xyz, Bytes8{255, 0}), (Samples{31595, 32768, 27030, 0, 0, 0}));
    EXPECT_EQ(trcMatrix(lab, Samples{65535, 0}), (Samples{65280, 32768, 32768, 0, 32768, 32768}));
    EXPECT_EQ(trcMatrix(straight, Samples{65535}), (Samples{65280, 32768, 32768}));
    EXPECT_EQ(trcMatrix(State("GRAY", "Lab ", {wide}), Samples{0, 65535}),
              (Samples{0, 32768, 32768, 65280, 32768, 32768}));
    // An 8-bit white of Lab is dropped; without curves the sample is taken as it stands.
    EXPECT_EQ(trcMatrix(lab, Bytes8{255, 0}), (Samples{32768, 32768, 0, 32768, 32768, kUntouched}));
    EXPECT_EQ(trcMatrix(straight, Bytes8{255}), (Samples{254, 32768, 32768}));
    // Back: Y or L* is looked up; beyond Y = 1 the last segment goes on, and wraps.
    const State fromXyz("XYZ ", "GRAY", {bent}), fromLab("Lab ", "GRAY", {bent}),
        linear("XYZ ", "GRAY", {});
    EXPECT_EQ(matrixTrc(fromXyz, {9, 32768, 9, 9, 16384, 9, 9, 34816, 9}),
              (Samples{60000, 10000, 66250 - 65536}));
    EXPECT_EQ(matrixTrc(fromLab, {65280, 9, 9, 32640, 9, 9}), (Samples{60000, 10000}));
    EXPECT_EQ(matrixTrc(linear, {9, 32768, 9, 9, 65535, 9, 9, 16384, 9}),
              (Samples{65535, 65535, 32768}));
}

// The depths that only the driver reaches: 8-bit results are 16-bit ones divided by 256, cut to 255
// going to the connection space, wrapped going to the device.
TEST(MatrixTrcKernels, ScaleBytesWrongly) {
    const ProfileBytes profile = rgbProfile({curveTag({0, 65535})}, "scnr", true);
    const OwnedXform forward = requested(profile, 0, icDeviceToPcs),
                     back = requested(profile, 0, icPcsToDevice);
    const Samples in = {0, 1, 254, 255, 64, 255}, words = {0, 257, 65278, 65535, 16448, 65535};
    EXPECT_EQ(converted(forward.get(), in, 8, 16), words);
    EXPECT_EQ(converted(back.get(), in, 8, 16), words);
    EXPECT_EQ(converted(forward.get(), in, 8, 8), (Samples{0, 1, 255, 255, 64, 255}));
    EXPECT_EQ(converted(back.get(), in, 8, 8), (Samples{0, 1, 255, 0, 64, 0}));
}

}  // namespace
}  // namespace lumoxa_test
