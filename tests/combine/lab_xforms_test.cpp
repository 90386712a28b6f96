// SPDX-License-Identifier: Apache-2.0
//
// Transforms made from formulas, and blank lut16 tags.
#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

TEST(Lut16, IsLaidOutWrongly) {
    const auto words = [](int in, int inEntries, int grid, int out, int outEntries,
                          unsigned* size) {
        icLut16Type* lut = nullptr;
        EXPECT_EQ(icAllocLut16(&lut, in, inEntries, grid, out, outEntries, size), 0);
        const auto* first = reinterpret_cast<const uint16_t*>(lut);
        const Samples copy(first, first + *size / 2);
        icFree(lut);
        return copy;
    };
    unsigned size = 0;
    Samples expected = {0x7432, 0x6D66, 0, 0, 4 | 2 << 8, 3, 0, 1, 0, 0, 0, 0, 0,
                        0,      0,      1, 0, 0,          0, 0, 0, 0, 0, 1, 5, 7};
    for (int c = 0; c < 4; ++c)
        expected.insert(expected.end(), {0, 16384, 32768, 49151, 65535});
    expected.resize(27 + 7 * 2 + 5 * 4 + 81 * 2);
    EXPECT_EQ(words(4, 5, 3, 2, 7, &size), expected);
    EXPECT_EQ(size, expected.size() * 2);
    const Samples two = words(3, 0, 2, 3, 0, &size), ramps = {0, 65535, 0, 65535, 0, 65535};
    EXPECT_EQ(Samples(two.begin() + 24, two.begin() + 26), (Samples{2, 2}));
    EXPECT_EQ(Samples(two.begin() + 26, two.begin() + 32), ramps);
    EXPECT_EQ(Samples(two.end() - 7, two.end() - 1), ramps);
    EXPECT_EQ(icAllocLut16(nullptr, 3, 0, 2, 3, 0, nullptr), 0);
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
    EXPECT_NE(same->state, nullptr);  // plain, though it has three inputs
    EXPECT_EQ(same->intent, 3U);
    EXPECT_EQ(same->transType, 4U);
    EXPECT_EQ(same->pcsWhite[2], 27030);
    EXPECT_EQ(same->mediaWhite[2], 20730);  // another Z, deliberately
    for (const int bits : {0, -1, 17})
        EXPECT_EQ(icMakeLabXform(8, bits, 8, &none), icErrInvalid);
}

TEST(LabBuilders, MissWhiteOrTakeChainsThatCannotWork) {
    const std::vector<Bytes> curves(3, curveTag({563}));
    const OwnedXform toXyz = requested(rgbProfile(curves, "scnr"), 1, icDeviceToPcs);
    const OwnedXform fromXyz = requested(rgbProfile(curves, "scnr"), 1, icPcsToDevice);
    const icXform_t forward[] = {toXyz.get(), fromXyz.get()},
                    back[] = {fromXyz.get(), fromXyz.get()}, null[] = {nullptr};
    icXform_t fromLab = nullptr, toLab = nullptr;
    ASSERT_EQ(icBuildLabXform(1, back, &fromLab, nullptr), 0);
    ASSERT_EQ(icBuild2LabXform(1, forward, &toLab, icCombineColorimetric, nullptr), 0);
    const OwnedXform owner(fromLab), toOwner(toLab);
    EXPECT_EQ(described(fromLab).inSpace, fourcc("Lab "));
    EXPECT_EQ(described(toLab).outSpace, fourcc("Lab "));
    EXPECT_EQ(described(fromLab).intent, 1U);
    // On the way in L* = 100 is 65535, on the way out 65280.
    const Samples device = {65535, 65535, 65535, 0, 0, 0};
    EXPECT_LE(largestDifference(converted(fromLab, {65535, 32768, 32768, 0, 32768, 32768}), device),
              300);
    EXPECT_LE(largestDifference(converted(toLab, device), {65280, 32768, 32768, 0, 32768, 32768}),
              20);

    int link = -1;
    const auto expect = [&](int code, const auto& build) {
        icXform_t out = toXyz.get();
        EXPECT_EQ(build(&out), code);
        EXPECT_EQ(out, nullptr);
    };
    expect(icErrXformKind,
           [&](icXform_t* out) { return icBuildLabXform(1, forward, out, nullptr); });
    expect(icErrXformKind, [&](icXform_t* out) { return icBuildLabXform(2, back, out, &link); });
    EXPECT_EQ(link, 2);
    expect(icErrInvalid, [&](icXform_t* out) { return icBuildLabXform(0, back, out, nullptr); });
    expect(icErrInvalid, [&](icXform_t* out) { return icBuildLabXform(1, null, out, nullptr); });
    expect(icErrInvalid, [&](icXform_t* out) { return icBuildLabXform(1, nullptr, out, nullptr); });
    expect(icErrXformKind, [&](icXform_t* out) { return icBuild2LabXform(1, back, out, nullptr); });
    expect(icErrInvalid,
           [&](icXform_t* out) { return icBuild2LabXform(0, forward, out, nullptr); });
    expect(icErrInvalid,
           [&](icXform_t* out) { return icBuild2LabXform(2, forward, out, nullptr); });
    expect(icErrInvalid,
           [&](icXform_t* out) { return icBuild2LabXform(1, forward, out, 4, nullptr); });
}

}  // namespace
}  // namespace lumoxa_test
