// SPDX-License-Identifier: Apache-2.0
//
// Transforms made from formulas, and blank lut16 tags.
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

TEST(Lut16, StartsWithRampsForCurves) {
    icLut16Type* lut = nullptr;
    unsigned size = 0;
    ASSERT_EQ(icAllocLut16(&lut, 3, 0, 2, 3, 0, &size), 0);  // ramps of two entries
    const auto* words = reinterpret_cast<const uint16_t*>(lut);
    EXPECT_EQ(Samples(words + 24, words + 29), (Samples{2, 2, 0, 65535, 0}));
    EXPECT_EQ(Samples(words + size / 2 - 4, words + size / 2 - 1), (Samples{65535, 0, 65535}));
    icFree(lut);
    EXPECT_NE(icAllocLut16(nullptr, 16, 2, 255, 255, 2, nullptr), 0);  // no memory is that large
}

TEST(LabIdentity, ScalesToOtherBits) {
    const Samples in = SeededRandom(4).samples(300);
    icXform_t same = nullptr, fewer = nullptr, none = nullptr;
    ASSERT_EQ(icMakeLabXform(16, 16, 16, &same), 0);
    ASSERT_EQ(icMakeLabXform(8, 10, 1, &fewer), 0);
    const OwnedXform owner(same), fewerOwner(fewer);
    EXPECT_LE(largestDifference(converted(same, in), in), 1);
    EXPECT_EQ(converted(fewer, {65535, 65535, 65535, 0, 0, 0}), (Samples{255, 1023, 1, 0, 0, 0}));
    for (const int bits : {0, -1, 17})
        EXPECT_EQ(icMakeLabXform(8, bits, 8, &none), icErrInvalid);
    EXPECT_EQ(none, nullptr);
}

TEST(LabBuilders, KeepWhiteAndRefuseChainsThatCannotWork) {
    const ProfileBytes profile = rgbProfile({curveTag({563})}, "scnr");
    const OwnedXform toXyz = requested(profile, 1, icDeviceToPcs);
    const OwnedXform fromXyz = requested(profile, 1, icPcsToDevice);
    const icXform_t forward[] = {toXyz.get(), fromXyz.get()},
                    back[] = {fromXyz.get(), fromXyz.get()}, null[] = {nullptr};
    icXform_t fromLab = nullptr, toLab = nullptr;
    ASSERT_EQ(icBuildLabXform(1, back, &fromLab, nullptr), 0);
    ASSERT_EQ(icBuild2LabXform(1, forward, &toLab, icCombineColorimetric, nullptr), 0);
    const OwnedXform owner(fromLab), toOwner(toLab);
    EXPECT_EQ(described(fromLab).inSpace, fourcc("Lab "));
    EXPECT_EQ(described(toLab).outSpace, fourcc("Lab "));
    // On the way in L* = 100 is 65535, on the way out 65280.
    const Samples device = {65535, 65535, 65535, 0, 0, 0};
    EXPECT_LE(largestDifference(converted(fromLab, {65535, 32768, 32768, 0, 32768, 32768}), device),
              300);
    EXPECT_LE(largestDifference(converted(toLab, device), {65280, 32768, 32768, 0, 32768, 32768}),
              20);

    const struct {
        bool toLab;
        int count;
        const icXform_t* chain;
        int code, link, options = 0;
    } cases[] = {{false, 1, forward, icErrXformKind, -1}, {false, 2, back, icErrXformKind, 2},
                 {false, 0, back, icErrInvalid, -1},      {false, 1, null, icErrInvalid, -1},
                 {true, 1, back, icErrXformKind, -1},     {true, 1, forward, icErrInvalid, -1, 4}};
    for (const auto& c : cases) {
        icXform_t out = toXyz.get();
        int link = -1;
        EXPECT_EQ(c.toLab ? icBuild2LabXform(c.count, c.chain, &out, c.options, &link)
                          : icBuildLabXform(c.count, c.chain, &out, &link),
                  c.code);
        EXPECT_EQ(out, nullptr);
        EXPECT_EQ(link, c.link);
    }
}

}  // namespace
}  // namespace lumoxa_test
