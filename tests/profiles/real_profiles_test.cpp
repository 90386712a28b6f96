// SPDX-License-Identifier: Apache-2.0
//
// Every profile that the three packages install, in every intent and direction.
#include "tests/support/real_profiles.h"

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace {

using namespace lumoxa_test;

TEST(RealProfiles, ConvertInEveryIntentAndDirection) {
    // Without this, a machine that lacks a package would pass by testing nothing.
    for (const char* end : {"icc/ITULab.icc", "colord/sRGB.icc", "default_cmyk.icc"})
        EXPECT_NO_THROW(realProfile(end));
    size_t built = 0, refused = 0;
    for (const std::string& path : realProfilePaths()) {
        const OwnedProfile profile = loaded(fileBytes(path));
        ASSERT_NE(profile, nullptr) << path;
        // Directions from and to the device and of the gamut, in the four intents.
        for (uint32_t each = 0; each < 12; ++each) {
            icXform_t xform = nullptr;
            const int code = icXformGet(profile.get(), icRenderingIntent{each / 3},
                                        icTransType{icDeviceToPcs + each % 3}, &xform);
            const OwnedXform owner(xform);
            EXPECT_EQ(xform != nullptr, code == 0);
            EXPECT_TRUE(code == 0 || code == icErrNoTag || code == icErrTagType) << path << code;
            ++(code == 0 ? built : refused);
            if (code != 0 || described(xform).kind == 0) continue;
            const uint32_t channels = described(xform).inChannels;
            Samples pixels = SeededRandom(1).samples(size_t{70} * channels, 255);
            for (const uint16_t end : {0, 255})
                pixels.insert(pixels.end(), channels, end);
            converted(xform, pixels);
            if (described(xform).outSpace != fourcc("GRAY")) converted(xform, pixels, 8, 16);
        }
    }
    EXPECT_GT(built, 10 * refused);
}

}  // namespace
