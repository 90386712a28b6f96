// SPDX-License-Identifier: Apache-2.0
//
// Transforms that a profile can give but a chain has to be careful with.
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

// A profile may name a connection space and hold a tag of another number of channels, or a curve of
// more entries than a LUT can have.
TEST(OddStages, AreRefusedWhereNoLutCanHoldThem) {
    const ProfileBytes printer = ProfileBytes("prtr", "CMYK", "Lab ")
                                     .addTag("B2A0", gridTag(1, 4, 33, {}))
                                     .addTag("A2B0", gridTag(4, 1, 3, {}));
    const ProfileBytes scanner = rgbProfile({curveTag(Samples(70000, 1))}, "scnr");
    for (const OwnedXform& x :
         {requested(printer, 3, icPcsToDevice), requested(printer, 3, icDeviceToPcs),
          requested(scanner, 1, icDeviceToPcs)})
        EXPECT_EQ(combined({x.get()}, icCombineColorimetric, icErrXformKind), nullptr);
}

// The result of an absolute transform is absolute: its white is the connection space's, so a Lab
// stage behind it must not make it relative to the paper again.
TEST(OddStages, KeepAbsoluteColorimetryInALaterChain) {
    ProfileBytes profile = rgbProfile({curveTag({256})}, "scnr");
    profile.addTag("wtpt", xyzTag(0.8, 0.85, 0.6));
    const OwnedXform absolute = requested(profile, 3, icDeviceToPcs);
    const OwnedXform alone = combined({absolute.get()}, icCombineColorimetric);
    Samples labs[2];
    const icXform_t sources[] = {absolute.get(), alone.get()};
    for (int i = 0; i < 2; ++i) {
        icXform_t toLab = nullptr;
        ASSERT_EQ(icBuild2LabXform(1, sources + i, &toLab, nullptr), 0);
        labs[i] = converted(OwnedXform(toLab).get(), {65535, 65535, 65535});
    }
    EXPECT_LT(labs[0][0], 62000);
    EXPECT_LE(largestDifference(labs[0], labs[1]), 60);
}

TEST(OddStages, ReleaseAStateThatIsBuiltTwice) {
    const OwnedProfile profile = loaded(smallRgbProfile());
    const OwnedXform x = requested(rgbProfile({curveTag({512})}, "scnr"), 1, icDeviceToPcs);
    EXPECT_EQ(icBuildMatrixTrcXform(const_cast<icProfileInternal*>(profile.get()),
                                    const_cast<icXformInternal*>(x.get()), icRelativeColorimetric),
              0);
    EXPECT_EQ(described(x.get()).kind, fourcc("MatT"));
}

}  // namespace
}  // namespace lumoxa_test
