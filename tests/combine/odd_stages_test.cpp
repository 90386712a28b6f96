// SPDX-License-Identifier: Apache-2.0
//
// Transforms that a profile can give but a chain has to be careful with.
#include <gtest/gtest.h>

#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

int combineAlone(const OwnedXform& x, OwnedXform& out) {
    const icXform_t chain[] = {x.get()};
    icXform_t result = nullptr;
    const int code =
        icCombineXforms(1, chain, &result, icCombineColorimetric, nullptr, nullptr, nullptr, 0);
    out.reset(result);
    return code;
}

// A profile may name a connection space and hold a tag of another number of channels.
TEST(OddStages, ReadBesidesAGridThatIsNotLab) {
    const ProfileBytes printer = ProfileBytes("prtr", "CMYK", "Lab ")
                                     .addTag("B2A0", gridTag(1, 4, 33, {}))
                                     .addTag("A2B0", gridTag(4, 1, 3, {}));
    for (const icTransType direction : {icPcsToDevice, icDeviceToPcs}) {
        OwnedXform out;
        EXPECT_EQ(combineAlone(requested(printer, 3, direction), out), icErrXformKind);
        EXPECT_EQ(out, nullptr);
    }
}

TEST(OddStages, LoseCurvesTooLongForALut) {
    const std::vector<Bytes> curves(3, curveTag(Samples(70000, 1)));
    OwnedXform out;
    EXPECT_EQ(combineAlone(requested(rgbProfile(curves, "scnr"), 1, icDeviceToPcs), out),
              icErrXformKind);
}

// The result of an absolute transform is absolute: its white is the connection space's, so a Lab
// stage behind it must not make it relative to the paper again.
TEST(OddStages, UndoAbsoluteColorimetryInALaterChain) {
    ProfileBytes profile = rgbProfile(std::vector<Bytes>(3, curveTag({256})), "scnr");
    profile.addTag("wtpt", xyzTag(0.8, 0.85, 0.6));
    const OwnedXform absolute = requested(profile, 3, icDeviceToPcs);
    OwnedXform alone;
    ASSERT_EQ(combineAlone(absolute, alone), 0);
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

TEST(OddStages, LeakAStateThatIsBuiltTwice) {
    const OwnedProfile profile =
        loaded(rgbProfile(std::vector<Bytes>(3, curveTag({256})), "scnr").image());
    OwnedXform x;
    ASSERT_EQ(request(rgbProfile(std::vector<Bytes>(3, curveTag({512})), "scnr").image(), 1,
                      icDeviceToPcs, x),
              0);
    EXPECT_EQ(icBuildMatrixTrcXform(const_cast<icProfileInternal*>(profile.get()),
                                    const_cast<icXformInternal*>(x.get()), icRelativeColorimetric),
              0);
    EXPECT_EQ(described(x.get()).kind, fourcc("MatT"));
}

}  // namespace
}  // namespace lumoxa_test
