// SPDX-License-Identifier: Apache-2.0
//
// Samples as colours and back, and the octave tables that stand for curves between them.
#include <cmath>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "base/pcs_encoding.h"
#include "convert/octave_table.h"
#include "convert/sample_codec.h"
#include "profile/signatures.h"
#include "tests/support/sample_types.h"

namespace lumoxa_test {
namespace {

using lumoxa::fourcc;
using lumoxa::kBlockPixels;
using lumoxa::Row;
using namespace lumoxa::engine;

class CodecOf : public testing::TestWithParam<std::tuple<uint32_t, SampleType>> {
  protected:
    const uint32_t space_ = std::get<0>(GetParam());
    const SampleType type_ = std::get<1>(GetParam());
};

template <class Sample>
void expectRoundTrip(const SampleCodec& codec) {
    Row rows[kMaxChannels];
    for (uint32_t first = 0; first <= std::numeric_limits<Sample>::max(); first += kBlockPixels) {
        Sample before[kBlockPixels][3], after[kBlockPixels][3];
        for (uint32_t i = 0; i < kBlockPixels; ++i) {
            for (Sample& sample : before[i])
                sample = static_cast<Sample>(first + i);
        }
        codec.load(before, kBlockPixels, rows);
        codec.store(rows, kBlockPixels, after);
        EXPECT_EQ(std::memcmp(before, after, sizeof before), 0) << first;
    }
}

TEST_P(CodecOf, BringsEverySampleBack) {
    const SampleCodec codec(space_, 3, type_);
    if (type_ == SampleType::kU8) expectRoundTrip<uint8_t>(codec);
    if (type_ == SampleType::kU16) expectRoundTrip<uint16_t>(codec);
    const float infinity = std::numeric_limits<float>::infinity();
    Row rows[kMaxChannels] = {{std::nanf("")}, {infinity}, {-infinity}};
    float samples[3] = {};  // of any type
    codec.store(rows, 1, samples);
    codec.load(samples, 1, rows);
    for (int c = 0; c < 3; ++c)
        EXPECT_TRUE(std::isfinite(rows[c][0])) << c;
    EXPECT_GT(rows[1][0], rows[2][0]);
}

INSTANTIATE_TEST_SUITE_P(Spaces, CodecOf,
                         testing::Combine(testing::Values(fourcc("RGB "), fourcc("CMYK"),
                                                          fourcc("Lab "), fourcc("XYZ ")),
                                          testing::Values(SampleType::kU8, SampleType::kU16,
                                                          SampleType::kF32)));

TEST(SampleCodec, EncodesLabAsVersion4AndXyzByItsRange) {
    const uint16_t lab[3] = {65535, 32896, 0}, xyz[3] = {0, 32768, 65535};
    Row rows[kMaxChannels];
    SampleCodec(fourcc("Lab "), 3, SampleType::kU16).load(lab, 1, rows);
    EXPECT_NEAR(rows[0][0], 100, 1e-5);
    EXPECT_NEAR(rows[1][0], 0, 1e-4);
    EXPECT_NEAR(rows[2][0], -128, 1e-5);
    SampleCodec(fourcc("XYZ "), 3, SampleType::kU16).load(xyz, 1, rows);
    EXPECT_EQ(rows[0][0], 0);
    EXPECT_NEAR(rows[1][0], 1, 1e-6);
    EXPECT_NEAR(rows[2][0], 1 + 32767.0 / 32768, 1e-6);
}

class OctaveTableOf : public testing::TestWithParam<double> {};

TEST_P(OctaveTableOf, StaysWithinItsErrorOfAPower) {
    const double gamma = GetParam();
    const double bound =
        std::fabs(gamma * (gamma - 1)) / (8.0 * OctaveTable::kSteps * OctaveTable::kSteps);
    const OctaveTable table(*gammaCurve(gamma));
    for (int i = 0; i < 20000; ++i) {
        auto value = static_cast<float>(std::pow(0.9993, i));  // down to 1e-6
        const double exact = std::pow(static_cast<double>(value), static_cast<float>(gamma));
        table.run(&value, 1);
        EXPECT_NEAR(value, exact, exact * (bound + 3e-7) + 1e-37) << i;
    }
}

TEST_P(OctaveTableOf, KeepsTheEnds) {
    const OctaveTable table(*gammaCurve(GetParam()));
    float ends[] = {0, 1, -5, 5, std::nanf(""), std::numeric_limits<float>::infinity()};
    table.run(ends, 6);
    EXPECT_EQ(std::vector<float>(ends, ends + 6), std::vector<float>({0, 1, 0, 1, 0, 1}));
}

INSTANTIATE_TEST_SUITE_P(Gammas, OctaveTableOf, testing::Values(1.8, 2.2, 2.4, 0.4545, 1 / 2.4));

}  // namespace
}  // namespace lumoxa_test
