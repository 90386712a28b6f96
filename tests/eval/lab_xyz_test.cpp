// SPDX-License-Identifier: Apache-2.0
//
// Lab and XYZ kernels, against the CIE formulas in double precision.
#include <array>
#include <cmath>

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

using White = std::array<unsigned short, 3>;

class LabXyz : public testing::TestWithParam<White> {
  protected:
    const White white = GetParam();
    OwnedXform toLab{icGetXyzToLabXform(white.data(), white.data())};
    OwnedXform toXyz{icGetLabToXyzXform(white.data(), white.data(), false)};
    OwnedXform fullToXyz{icGetLabToXyzXform(white.data(), white.data(), true)};

    Samples lab(Samples pixels) const {  // in place, which is allowed
        icConvertXYZToLab(toLab->state.get(), pixels.data(), pixels.data(), int(pixels.size() / 3));
        return pixels;
    }
    Samples xyz(const Samples& pixels, const OwnedXform& xform) const {
        Samples out(pixels.size());
        icConvertLabToXyz(xform->state.get(), pixels.data(), out.data(), int(pixels.size() / 3));
        return out;
    }
};

double f(double t) {
    return t > 216.0 / 24389 ? std::cbrt(t) : (24389.0 / 27 * t + 16) / 116;
}

TEST_P(LabXyz, KeepsWhiteAndBlack) {
    const Samples w(white.begin(), white.end());
    EXPECT_EQ(lab({w[0], w[1], w[2], 0, 0, 0}), (Samples{65280, 32768, 32768, 0, 32768, 32768}));
    EXPECT_EQ(lab({65535, 65535, 65535}), (Samples{65280, 32768, 32768}));  // brighter than white
    EXPECT_EQ(xyz({65280, 32768, 32768}, toXyz), w);
    EXPECT_EQ(xyz({65535, 32768, 32768}, fullToXyz), w);
    EXPECT_EQ(xyz({0, 32768, 32768}, toXyz), (Samples{0, 0, 0}));
    const Samples beyond = xyz({100, 0, 65535}, toXyz);  // a* = -128, b* = 128
    EXPECT_EQ(beyond[0] + beyond[2], 0);
}

// A step of the tables is 1.16, 1.96 and 0.78 units of L*, a* and b*, and up to 1.5 of XYZ.
TEST_P(LabXyz, FollowsTheCieFormulas) {
    SeededRandom random(5);
    Samples in, full;
    for (int i = 0; i < 4000; ++i) {
        const double grey = random.upTo(1000) / 1200.0;
        for (const uint16_t w : white)
            in.push_back(uint16_t(w * grey * (900 + random.upTo(200)) / 1000));
    }
    const Samples out = lab(in);
    for (size_t i = 0; i < in.size(); i += 3) {
        double t[3];
        for (size_t c = 0; c < 3; ++c)
            t[c] = f(double(in[i + c]) / white[c]);
        EXPECT_NEAR(out[i], 652.8 * (116 * t[1] - 16), 3);
        EXPECT_NEAR(out[i + 1], 32768 + 256 * 500 * (t[0] - t[1]), 5);
        EXPECT_NEAR(out[i + 2], 32768 + 256 * 200 * (t[1] - t[2]), 3);
        full.insert(full.end(), {uint16_t(out[i] * 257.0 / 256 + 0.5), out[i + 1], out[i + 2]});
    }
    EXPECT_LE(largestDifference(xyz(out, toXyz), in), 5);
    EXPECT_LE(largestDifference(xyz(full, fullToXyz), in), 5);
}

INSTANTIATE_TEST_SUITE_P(Whites, LabXyz,
                         testing::Values(White{31595, 32768, 27030}, White{26000, 27100, 20300}));

}  // namespace
}  // namespace lumoxa_test
