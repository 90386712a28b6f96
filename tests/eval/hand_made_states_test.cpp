// SPDX-License-Identifier: Apache-2.0
//
// Kernels on states that callers make by hand and that no profile leads to.
#include <gtest/gtest.h>

#include "eval/table_stage.h"
#include "lumoxa/gray.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

TEST(HandMadeStates, ConvertWithoutCurves) {
    trcMatrix_t s{};
    s.matrix[0] = s.matrix[4] = s.matrix[8] = 1;
    s.inSpace = fourcc("GRAY"), s.outSpace = fourcc("Lab ");
    const uint16_t white = 65535;
    const uint8_t byte = 255;  // is taken as it stands
    Samples out(3);
    icConvertTrcMatrix(&s, &white, out.data(), 1);
    EXPECT_EQ(out, (Samples{65280, 32768, 32768}));
    icConvertTrcMatrix(&s, &byte, out.data(), 1);
    EXPECT_EQ(out, (Samples{254, 32768, 32768}));
    s.inSpace = fourcc("XYZ "), s.outSpace = fourcc("GRAY");
    const Samples xyz = {9, 32768, 9, 9, 65535, 9, 9, 16384, 9}, rgb = {1, 20000, 65535};
    icConvertMatrixTrc(&s, xyz.data(), out.data(), 3);
    EXPECT_EQ(out, (Samples{65535, 65535, 32768}));
    s.inSpace = s.outSpace = fourcc("RGB ");
    icConvertMatrixTrc(&s, rgb.data(), out.data(), 1);
    EXPECT_EQ(out, rgb);
    icConvertTrcMatrix(&s, rgb.data(), out.data(), 1);
    EXPECT_EQ(out, rgb);
}

// To 8 bits, the highest half step of a table has no sample.
TEST(HandMadeStates, EightBitGrayOf65408WrapsToZero) {
    GrayConv_t state{};
    const lumoxa::XformPtr xform = lumoxa::newXform();
    xform->kind = fourcc("KtoL");
    xform->inChannels = xform->outChannels = 3;
    xform->state =
        lumoxa::XformState(std::shared_ptr<const GrayConv_t>(&state, [](const GrayConv_t*) {}));
    EXPECT_EQ(converted(xform.get(), {200, 1, 2}, 8, 16), Samples(3, 200));
    for (const auto& [value, sample] : {std::pair{65408, 0}, {65407, 255}, {128, 1}, {127, 0}}) {
        Samples table(2, static_cast<uint16_t>(value));
        state.inTable1 = state.inTable2 = state.inTable3 = table.data();
        state.inEntries = 2, state.built = 1;
        EXPECT_EQ(converted(xform.get(), {99, 0, 0}, 8, 8), Samples(3, uint16_t(sample))) << value;
    }
}

TEST(HandMadeStates, UseTheFlareOfEachChannel) {
    constexpr uint32_t kChannels = 4;
    SeededRandom random(1);
    const Samples tables = random.samples(kChannels * lumoxa::kStageTableSize);
    const Samples in = random.samples(kChannels * 101);
    const auto state = lumoxa::makeTableStage(kChannels, tables.data());
    Samples out(in.size());
    lumoxa::convertThroughTables(state.get(), in.data(), out.data(), 101);
    for (size_t i = 0; i < in.size(); ++i)
        EXPECT_EQ(out[i], tables[i % kChannels * lumoxa::kStageTableSize + in[i]]) << i;
}

}  // namespace
}  // namespace lumoxa_test
