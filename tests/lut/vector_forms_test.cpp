// SPDX-License-Identifier: Apache-2.0
//
// The forms of the vector kernels give the same bits, for numbers of every kind: what no picture
// holds (infinities, what is not a number, positions beyond every table) as well.
//
// The form without vectors, for compilers that have none, is compiled here alone.
#define LUMOXA_PLAIN_LANES
#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "convert/shaper_kernels_body.h"
#include "lut/row_kernels_body.h"
#include "tests/support/seeded_random.h"

namespace lumoxa {
namespace portable {
extern const RowKernels kRowKernels;
extern const engine::ShaperKernels kShaperKernels;
}  // namespace portable
}  // namespace lumoxa

namespace lumoxa_test {
namespace {

using namespace lumoxa;

constexpr int kRows = 4;
struct Block {
    Row rows[kRows];
    Groups groups;
    uint32_t cell[kBlockPixels];
    uint8_t bytes[kBlockPixels * kRows];
    uint16_t words[kBlockPixels * kRows];
};

class VectorForms : public testing::TestWithParam<int> {
  protected:
    int pixels() const { return GetParam(); }

    /// Runs two forms on one block, in which some values are no samples; the whole block counts,
    /// so what is written behind the last pixel shows, too.
    template <class Kernels, class Work>
    void compare(const Kernels& one, const Kernels& other, float scale, const Work& work) {
        Block a = {}, b = {};
        for (int r = 0; r < kRows; ++r) {
            for (float& value : a.rows[r])
                value = strange_ && random_.upTo(15) == 0
                            ? kStrange[random_.upTo(std::size(kStrange) - 1)]
                            : static_cast<float>(random_.upTo(65535)) * scale;
        }
        std::memcpy(a.groups, a.rows, sizeof a.groups);
        std::memcpy(&b, &a, sizeof a);
        work(one, a);
        work(other, b);
        // Bits, as what is no number differs from itself.
        const auto bitsOf = [](const auto& rows) {
            std::array<uint32_t, sizeof rows / sizeof(uint32_t)> bits;
            std::memcpy(bits.data(), rows, sizeof rows);
            return bits;
        };
        EXPECT_EQ(bitsOf(a.rows), bitsOf(b.rows));
        EXPECT_EQ(bitsOf(a.groups), bitsOf(b.groups));
        EXPECT_TRUE(std::equal(a.cell, a.cell + kBlockPixels, b.cell));
        EXPECT_TRUE(std::equal(a.bytes, a.bytes + sizeof a.bytes, b.bytes));
        EXPECT_TRUE(std::equal(a.words, std::end(a.words), b.words));
    }
    template <class Work>
    void rows(float scale, const Work& work) {
        compare(portable::kRowKernels, arrays::kRowKernels, scale, work);
        compare(portable::kRowKernels, rowKernels(), scale, work);
    }
    template <class Work>
    void shapers(const Work& work) {
        compare(portable::kShaperKernels, arrays::kShaperKernels, 1.1f / 65535, work);
        compare(portable::kShaperKernels, engine::shaperKernels(), 1.1f / 65535, work);
    }

    static constexpr float kInfinity = std::numeric_limits<float>::infinity();
    static constexpr float kStrange[] = {
        kInfinity, -kInfinity,   std::numeric_limits<float>::quiet_NaN(), 3e9f, -3e9f, -1.0f,
        -0.0f,     2147483648.0f};
    bool strange_ = true;
    SeededRandom random_{7};
};

TEST_P(VectorForms, LookUpAndLocateAlike) {
    const std::vector<uint16_t> table = random_.samples(257);
    rows(256.0f / 65535, [&](const RowKernels& kernels, Block& block) {
        kernels.lookUp(table.data(), 255, block.rows[0], pixels());
        kernels.locate(block.rows[1], pixels(), 0.1f, 23, 5, block.cell, block.rows[2]);
    });
}

TEST_P(VectorForms, SpreadSamplesAlike) {
    const std::vector<uint16_t> words = random_.samples(kBlockPixels * 15);
    const auto* const bytes = reinterpret_cast<const uint8_t*>(words.data());
    for (const int channels : {1, 3, 4}) {
        rows(1, [&](const RowKernels& kernels, Block& block) {
            kernels.spreadWords(words.data(), channels, pixels(), 0.7f, block.rows);
        });
        rows(1, [&](const RowKernels& kernels, Block& block) {
            kernels.spreadBytes(bytes, channels, pixels(), 257, block.rows);
        });
    }
}

TEST_P(VectorForms, InterpolateAlike) {
    constexpr uint32_t kStrides[] = {500, 100, 20, 4};
    const std::vector<uint16_t> nodes = random_.samples(2500);
    strange_ = false;
    for (const bool ties : {false, true}) {
        rows(1.0f / 65535, [&](const RowKernels& kernels, Block& block) {
            for (int i = 0; i < kBlockPixels; ++i) {
                block.cell[i] = kStrides[i % 4] * static_cast<uint32_t>(i % 3);
                if (ties) block.rows[i % 3][i] = block.rows[(i + 1) % 3][i];
            }
            kernels.tetrahedra(nodes.data(), kStrides + 1, block.cell, block.rows, pixels(),
                               block.groups);
            block.rows[0][0] += block.groups[0];
            kernels.cubes(nodes.data(), kStrides + 1, block.cell, block.rows, pixels(),
                          block.groups);
            block.rows[0][1] += block.groups[1];
            kernels.pentahedra(nodes.data(), kStrides, block.cell, block.rows, pixels(),
                               block.groups);
        });
    }
}

TEST_P(VectorForms, FinishAlike) {
    const std::vector<uint16_t> curves = random_.samples(1028);
    for (int outputs = 1; outputs <= 4; ++outputs) {
        for (const uint16_t* const table : {static_cast<const uint16_t*>(nullptr), curves.data()}) {
            rows(1, [&](const RowKernels& kernels, Block& block) {
                const GroupFinish finish = {256.0f / 65535, table, 257, 1.0f / 257, outputs};
                kernels.finishBytes(finish, block.groups, pixels(), block.bytes);
                kernels.finishWords(finish, block.groups, pixels(), block.words);
            });
        }
    }
}

TEST_P(VectorForms, ShapeAlike) {
    std::vector<float> octaves(40 * 256 + 2);
    for (float& value : octaves)
        value = static_cast<float>(random_.upTo(65535)) / 65535;
    const engine::MatrixRows matrix = {{{.4f, .3f, .2f}, {.1f, .7f, .1f}, {0, .2f, .9f}},
                                       {.01f, 0, -.01f}};
    shapers([&](const engine::ShaperKernels& kernels, Block& block) {
        for (Row& row : block.rows)
            kernels.toUnit(row, pixels());
        kernels.applyMatrix(matrix, block.rows, pixels());
        kernels.lookUpOctaves(octaves.data(), block.rows[0], pixels());
        kernels.storeWords(block.rows, 3, pixels(), block.words);
    });
    std::vector<uint32_t> steps(5 * 128 + 1);
    for (uint32_t& step : steps)
        step = uint32_t{random_.upTo(65535)} << 16 | random_.upTo(65535);
    engine::ByteSteps to = {steps.data(), {}, {}, {}, {}};
    for (int lane = 0; lane < kLanes; ++lane) {
        to.least[lane] = 0x1p-5f;
        to.restBits[lane] = 16;
        to.restMask[lane] = 0xFFFF;
        to.toStep[lane] = 0U - ((127U - 5U) << 7);
    }
    for (const int channels : {1, 3}) {
        shapers([&](const engine::ShaperKernels& kernels, Block& block) {
            kernels.storeBytes(to, block.groups, channels, pixels(), block.bytes);
        });
    }
}

INSTANTIATE_TEST_SUITE_P(Pixels, VectorForms, testing::Values(1, 2, 7, 8, 33, 63, 64));

}  // namespace
}  // namespace lumoxa_test
