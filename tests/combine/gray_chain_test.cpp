// SPDX-License-Identifier: Apache-2.0
//
// Gray transforms of three channels in chains.
#include <gtest/gtest.h>

#include "combine/lut16.h"
#include "lumoxa/gray.h"
#include "profile/pcs_encoding.h"
#include "tests/support/gray_profiles.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

constexpr int kOptions = icCombineColorimetric | icCombineKeepPaperWhite;
constexpr int kTolerance = 2 * 257;

OwnedXform gray(uint32_t direction, uint32_t intent = 1) {
    return requested(grayProfile(), intent, direction);
}

OwnedXform rgb(uint32_t direction) {
    return requested(rgbProfile({curveTag({563})}, "scnr"), 1, direction);
}

using PcsKernel = void (*)(const void*, const unsigned short*, unsigned short*, int);

Samples through(const OwnedXform& stage, PcsKernel kernel, const Samples& in) {
    Samples out(in.size());
    kernel(stage->state, in.data(), out.data(), static_cast<int>(in.size() / 3));
    return out;
}

Samples labOf(const Samples& xyz) {
    const OwnedXform stage(icGetXyzToLabXform(lumoxa::kD50White, lumoxa::kD50White));
    return through(stage, icConvertXYZToLab, xyz);
}

Samples xyzOf(const Samples& lab) {
    const OwnedXform stage(icGetLabToXyzXform(lumoxa::kD50White, lumoxa::kD50White, false));
    return through(stage, icConvertLabToXyz, lab);
}

class GrayChains : public testing::TestWithParam<uint32_t> {};

TEST_P(GrayChains, StrayFromTheirStagesToTheDevice) {
    const OwnedXform source = rgb(icDeviceToPcs), target = gray(icPcsToDevice, GetParam());
    const OwnedXform chain = combined({source.get(), target.get()}, kOptions);
    Samples in = SeededRandom(1).samples(60000);
    for (uint16_t v = 0; v < 65000; v += 100)
        in.insert(in.end(), 3, v);
    const Samples lab = labOf(converted(source.get(), in));
    expectNear(chain, in, converted(target.get(), lab), kTolerance);
}

TEST_P(GrayChains, StrayFromTheirStagesFromTheDevice) {
    const OwnedXform source = gray(icDeviceToPcs, GetParam()), target = rgb(icPcsToDevice);
    const OwnedXform chain = combined({source.get(), target.get()}, kOptions);
    Samples in;
    for (uint16_t v = 0; v < 65500; v += 35)
        in.insert(in.end(), {v, 0, 7});
    const Samples xyz = xyzOf(converted(source.get(), in));
    expectNear(chain, in, converted(target.get(), xyz), kTolerance);
}

INSTANTIATE_TEST_SUITE_P(Intents, GrayChains, testing::Values(0, 1));

TEST(GrayChainEnds, LoseTheirTables) {
    const OwnedXform source = rgb(icDeviceToPcs), target = gray(icPcsToDevice);
    const OwnedXform chain = combined({source.get(), target.get()}, kOptions);
    const auto& state = *static_cast<const GrayConv_t*>(target->state);
    const lumoxa::Lut16View lut(*reinterpret_cast<icLut16Type*>(chain->tagData));
    ASSERT_EQ(lut.outputEntries(), 3856);
    EXPECT_EQ(lut.grid(), 31);
    const uint16_t* const tables[] = {state.outTable1, state.outTable2, state.outTable3};
    for (int c = 0; c < 3; ++c)
        EXPECT_TRUE(std::equal(tables[c], tables[c] + 3856, lut.outputTable(c))) << c;
}

}  // namespace
}  // namespace lumoxa_test
