// SPDX-License-Identifier: Apache-2.0
//
// Gray transforms of three channels in chains.
#include "base/pcs_encoding.h"
#include "tests/support/gray_profiles.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"
#include "xform/xform_object.h"

namespace lumoxa_test {
namespace {

constexpr int kOptions = icCombineColorimetric | icCombineKeepPaperWhite;
constexpr int kTolerance = 2 * 257;

OwnedXform rgb(uint32_t direction) {
    return requested(rgbProfile({curveTag({563})}, "scnr"), 1, direction);
}

TEST(GrayChains, GiveWhatTheirStagesGive) {
    const OwnedXform toLab(icGetXyzToLabXform(lumoxa::kD50White, lumoxa::kD50White));
    const OwnedXform toXyz(icGetLabToXyzXform(lumoxa::kD50White, lumoxa::kD50White, false));
    const OwnedXform fromRgb = rgb(icDeviceToPcs), toRgb = rgb(icPcsToDevice);
    Samples colours = SeededRandom(1).samples(60000), grays;
    for (uint16_t v = 0; v < 65000; v += 100)
        colours.insert(colours.end(), 3, v);
    for (uint16_t v = 0; v < 65500; v += 35)
        grays.insert(grays.end(), {v, 0, 7});
    for (const uint32_t intent : {0U, 1U}) {
        const OwnedXform toGray = requested(grayProfile(), intent, icPcsToDevice);
        Samples pcs = converted(fromRgb.get(), colours);
        icConvertXYZToLab(toLab->state.get(), pcs.data(), pcs.data(), int(pcs.size() / 3));
        expectNear(combined({fromRgb.get(), toGray.get()}, kOptions), colours,
                   converted(toGray.get(), pcs), kTolerance);

        const OwnedXform fromGray = requested(grayProfile(), intent, icDeviceToPcs);
        pcs = converted(fromGray.get(), grays);
        icConvertLabToXyz(toXyz->state.get(), pcs.data(), pcs.data(), int(pcs.size() / 3));
        expectNear(combined({fromGray.get(), toRgb.get()}, kOptions), grays,
                   converted(toRgb.get(), pcs), kTolerance);
    }
}

}  // namespace
}  // namespace lumoxa_test
