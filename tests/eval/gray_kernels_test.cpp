// SPDX-License-Identifier: Apache-2.0
//
// The kernels of gray transforms, on states made by hand.
#include <cmath>

#include <gtest/gtest.h>

#include "lumoxa/gray.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

struct Kernel {
    const char* name;
    bool toDevice;
    size_t entries;
};

// A transform that does not own its tables. They wander at random, but as slowly as real ones, so
// that the place of a sample in single precision does not matter.
struct Xform {
    static constexpr int kStep = 60;
    Samples tables;
    GrayConv_t state{};
    lumoxa::XformPtr xform = lumoxa::newXform();

    explicit Xform(const Kernel& k) : tables(3 * k.entries, 40000) {
        SeededRandom random(1);
        for (size_t i = 1; i < tables.size(); ++i)
            tables[i] = static_cast<uint16_t>(tables[i - 1] + random.upTo(2 * kStep) - kStep);
        state.built = 1;
        (k.toDevice ? state.outEntries : state.inEntries) = static_cast<uint32_t>(k.entries);
        uint16_t** parts[2][3] = {{&state.inTable1, &state.inTable2, &state.inTable3},
                                  {&state.outTable1, &state.outTable2, &state.outTable3}};
        for (size_t c = 0; c < 3; ++c)
            *parts[k.toDevice][c] = &tables[c * k.entries];
        xform->kind = fourcc(k.toDevice ? "LtoK" : "KtoL");
        xform->inChannels = xform->outChannels = 3;
        xform->state = &state;
    }
};

class GrayKernels : public testing::TestWithParam<Kernel> {};

TEST_P(GrayKernels, StrayFromTheTables) {
    Xform x(GetParam());
    const size_t last = GetParam().entries - 1;
    for (const auto& [in, out] : {std::pair{16, 16}, {8, 16}, {8, 8}}) {
        const uint16_t top = in == 8 ? 255 : 65535;
        Samples pixels = SeededRandom(2).samples(300, top);
        pixels.insert(pixels.end(), {0, 5, 5, top, 5, 5});
        const Samples result = converted(x.xform.get(), pixels, in, out);
        for (size_t i = 0; i < pixels.size(); ++i) {
            const double at = double(pixels[i / 3 * 3]) / top * static_cast<double>(last);
            const auto entry = std::min(static_cast<size_t>(at), last - 1);
            const uint16_t* table = &x.tables[i % 3 * (last + 1)];
            const double part = at - static_cast<double>(entry);
            const double value = table[entry] + part * (table[entry + 1] - table[entry]);
            const double expected = out == 8 ? value / 256 : value;
            EXPECT_NEAR(result[i], expected, 0.55) << in << " to " << out << " " << i;
        }
        const size_t ends[] = {300, 303};
        for (size_t c = 0; c < 3 && out == 16; ++c) {
            EXPECT_EQ(result[ends[0] + c], x.tables[c * (last + 1)]);
            EXPECT_EQ(result[ends[1] + c], x.tables[c * (last + 1) + last]);
        }
    }
    converted(x.xform.get(), {1, 2, 3}, 16, 8, icErrXformKind);
}

// To 8 bits, the highest half step of a table has no sample.
TEST_P(GrayKernels, ClipWhatWraps) {
    Xform x(GetParam());
    for (const auto& [value, sample] :
         {std::pair{65535, 0}, {65408, 0}, {65407, 255}, {65280, 255}, {128, 1}, {127, 0}}) {
        std::fill(x.tables.begin(), x.tables.end(), static_cast<uint16_t>(value));
        EXPECT_EQ(converted(x.xform.get(), {99, 0, 0}, 8, 8), Samples(3, uint16_t(sample)))
            << value;
    }
}

TEST_P(GrayKernels, PassSamplesOnScaled) {
    Xform x(GetParam());
    x.state.built = 0;
    EXPECT_EQ(converted(x.xform.get(), {200, 1, 2, 255, 3, 4}, 8, 16),
              (Samples{200, 200, 200, 255, 255, 255}));
    EXPECT_EQ(converted(x.xform.get(), {200, 1, 2}, 8, 8), Samples(3, 200));
    EXPECT_EQ(converted(x.xform.get(), {54321, 1, 2}), Samples(3, 54321));
}

TEST_P(GrayKernels, DependOnTheLengthOfARun) {
    Xform x(GetParam());
    const Samples pixels = SeededRandom(3).samples(size_t{3} * 997);
    const Samples whole = converted(x.xform.get(), pixels);
    for (const ptrdiff_t run : {1, 3, 4, 5, 250}) {
        for (ptrdiff_t first = 0; first + run <= 500; first += run) {
            const auto from = pixels.begin() + 3 * first, expected = whole.begin() + 3 * first;
            ASSERT_EQ(converted(x.xform.get(), Samples(from, from + 3 * run)),
                      Samples(expected, expected + 3 * run))
                << run;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, GrayKernels,
                         testing::Values(Kernel{"KtoL", false, 4096}, Kernel{"LtoK", true, 3856},
                                         Kernel{"KtoLOfTwo", false, 2},
                                         Kernel{"LtoKOfTwo", true, 2}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace lumoxa_test
