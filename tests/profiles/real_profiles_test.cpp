// SPDX-License-Identifier: Apache-2.0
//
// Every profile that the three packages install, in every intent, direction and depth.
#include "tests/support/real_profiles.h"

#include <algorithm>
#include <string>

#include "profile/profile_object.h"
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace {

using namespace lumoxa_test;

/// Whether the tag table has what a transform of that direction is made of.
bool offers(const icProfileInternal& profile, uint32_t direction) {
    const auto has = [&](const std::string& name) {
        return lumoxa::hasTag(profile, signature(name));
    };
    const std::string lut = direction == icDeviceToPcs ? "A2B" : "B2A";
    if (has(lut + "0") || has(lut + "1") || has(lut + "2")) return true;
    return profile.header.colorSpace == fourcc("GRAY")
               ? has("kTRC")
               : has("rTRC") && has("gTRC") && has("bTRC") && has("rXYZ") && has("gXYZ") &&
                     has("bXYZ");
}

/// What asking for a transform of that direction has to give.
int expectedCode(const icProfileInternal& profile, uint32_t direction) {
    if (direction == icGamutTest) return 0;
    if (!offers(profile, direction)) return icErrNoTag;
    // The named-colour profiles' 'mBA ' tags are corrupt: of the three M curves that three inputs
    // make, one is there, and the matrix, cut short as well, runs into the B curves.
    return profile.header.deviceClass == fourcc("nmcl") ? icErrTagType : 0;
}

/// Whether pixels of these depths can be converted: always through a LUT, never from 16 to 8 bits
/// through curves, and through gray curves only where a 16-bit sample has room for the result.
bool converts(const icXformDesc_t& desc, int inBits, int outBits) {
    if (desc.kind == 0) return false;
    if (desc.kind != fourcc("TrcM") && desc.kind != fourcc("MatT")) return true;
    if (desc.inSpace == fourcc("GRAY")) return outBits == 16;
    if (desc.outSpace == fourcc("GRAY")) return inBits == 16 && outBits == 16;
    return inBits == 8 || outBits == 16;
}

TEST(RealProfiles, BuildAndConvertAllTheyOfferAndNothingElse) {
    // Without this, a machine that lacks a package would pass by testing nothing.
    for (const char* end : {"icc/ITULab.icc", "colord/sRGB.icc", "default_cmyk.icc"})
        EXPECT_NO_THROW(realProfile(end));
    for (const std::string& path : realProfilePaths()) {
        const Bytes image = fileBytes(path);
        const OwnedProfile profile = loaded(image);
        ASSERT_NE(profile, nullptr) << path;
        // Directions from and to the device and of the gamut, in the four intents.
        for (uint32_t each = 0; each < 12; ++each) {
            const uint32_t direction = icDeviceToPcs + each % 3, intent = each / 3;
            SCOPED_TRACE(path + " direction " + std::to_string(direction) + " intent " +
                         std::to_string(intent));
            OwnedXform xform;
            EXPECT_EQ(request(image, intent, direction, xform), expectedCode(*profile, direction));
            for (int bits = 0; xform && bits < 4; ++bits) {
                const icXformDesc_t desc = described(xform.get());
                const int in = bits & 1 ? 8 : 16, out = bits & 2 ? 8 : 16;
                const uint16_t top = in == 8 ? 255 : 65535;
                const uint32_t channels = std::max(desc.inChannels, 1U);
                Samples pixels = SeededRandom(1).samples(size_t{70} * channels, top);
                for (const uint16_t end : {uint16_t{0}, top})
                    pixels.insert(pixels.end(), channels, end);
                converted(xform.get(), pixels, in, out,
                          converts(desc, in, out) ? 0 : icErrXformKind);
            }
        }
    }
}

}  // namespace
