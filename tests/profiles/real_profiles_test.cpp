// SPDX-License-Identifier: Apache-2.0
//
// Every profile that the three packages install, through every loader, intent, direction and depth.
#include "tests/support/real_profiles.h"

#include <algorithm>
#include <cctype>
#include <string>

#include "profile/profile_object.h"
#include "tests/support/xforms.h"

namespace {

using namespace lumoxa_test;

enum class Source { File, WholeFile, Image, ImageWithLength };

OwnedProfile open(const std::string& path, Source source) {
    const Bytes image = fileBytes(path);
    icProfile_t profile = nullptr;
    int code = -1;
    switch (source) {
        case Source::File:
            code = icLoadProfile(path.c_str(), &profile);
            break;
        case Source::WholeFile:
            code = icProfileLoadProfile(nullptr, path.c_str(), nullptr, &profile);
            break;
        case Source::Image:
            code = icProfileLoadFromBuffer(nullptr, image.data(), &profile);
            break;
        case Source::ImageWithLength:
            code = icProfileLoadFromBuffer(nullptr, image.data(), image.size(), &profile);
            break;
    }
    EXPECT_EQ(code, 0) << path;
    return OwnedProfile(profile);
}

/// Whether the tag table has what a transform of that direction is made of.
bool offers(const icProfileInternal& profile, uint32_t direction) {
    const auto all = [&](std::initializer_list<const char*> names) {
        return std::all_of(names.begin(), names.end(), [&](const char* name) {
            return lumoxa::hasTag(profile, signature(name));
        });
    };
    const std::string lut = direction == icDeviceToPcs ? "A2B" : "B2A";
    for (const char* intent : {"0", "1", "2"}) {
        if (lumoxa::hasTag(profile, signature(lut + intent))) return true;
    }
    return profile.header.colorSpace == fourcc("GRAY")
               ? all({"kTRC"})
               : all({"rTRC", "gTRC", "bTRC", "rXYZ", "gXYZ", "bXYZ"});
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

constexpr int kProbes = 72;

/// Pixels whose channels are at their ends, near them and in between, in many combinations.
Samples probes(uint32_t channels, int bits) {
    const uint32_t top = bits == 8 ? 255 : 65535;
    const uint32_t levels[] = {0, top, 1, top - 1, top / 2, top / 3};
    Samples samples;
    for (uint32_t pixel = 0; pixel < kProbes; ++pixel) {
        for (uint32_t c = 0, rest = pixel; c < channels; ++c, rest = rest / 6 + c) {
            samples.push_back(static_cast<uint16_t>(levels[rest % 6]));
        }
    }
    return samples;
}

template <class In, class Out>
int codeOf(icXform_t xform, const icXformDesc_t& desc) {
    // A transform without conversion has no channels, but the layouts have to be sound ones.
    const uint32_t inChannels = std::max(desc.inChannels, 1U);
    const uint32_t outChannels = std::max(desc.outChannels, 1U);
    const Samples pixels = probes(inChannels, 8 * static_cast<int>(sizeof(In)));
    std::vector<In> source(pixels.begin(), pixels.end());
    std::vector<Out> destination(size_t{kProbes} * outChannels);
    const icPixelLayout_t from = packed(source.data(), kProbes, 1, inChannels);
    const icPixelLayout_t to = packed(destination.data(), kProbes, 1, outChannels);
    return icEvaluate(xform, &from, &to, nullptr, nullptr);
}

void expectEveryDepthHandled(icXform_t xform) {
    const icXformDesc_t desc = described(xform);
    const auto expected = [&](int in, int out) { return converts(desc, in, out) ? 0 : 507; };
    EXPECT_EQ((codeOf<uint8_t, uint8_t>(xform, desc)), expected(8, 8));
    EXPECT_EQ((codeOf<uint8_t, uint16_t>(xform, desc)), expected(8, 16));
    EXPECT_EQ((codeOf<uint16_t, uint16_t>(xform, desc)), expected(16, 16));
    EXPECT_EQ((codeOf<uint16_t, uint8_t>(xform, desc)), expected(16, 8));
}

class RealProfile : public testing::TestWithParam<std::string> {};

TEST_P(RealProfile, BuildsAndConvertsAllItOffersAndNothingElse) {
    const OwnedProfile profile = open(GetParam(), Source::WholeFile);
    ASSERT_NE(profile, nullptr);
    for (uint32_t direction : {icDeviceToPcs, icPcsToDevice, icGamutTest}) {
        for (uint32_t intent = icPerceptual; intent <= icAbsoluteColorimetric; ++intent) {
            SCOPED_TRACE(testing::Message() << "direction " << direction << " intent " << intent);
            const int expected = expectedCode(*profile, direction);
            icXform_t handle = nullptr;
            EXPECT_EQ(icXformGet(profile.get(), icRenderingIntent{intent}, icTransType{direction},
                                 &handle),
                      expected);
            const OwnedXform xform(handle);
            ASSERT_EQ(xform != nullptr, expected == 0);
            if (xform) expectEveryDepthHandled(xform.get());
        }
    }
}

TEST_P(RealProfile, ConvertsAlikeThroughEveryLoader) {
    for (uint32_t direction : {icDeviceToPcs, icPcsToDevice}) {
        std::vector<Samples> results;
        for (Source source :
             {Source::File, Source::WholeFile, Source::Image, Source::ImageWithLength}) {
            const OwnedProfile profile = open(GetParam(), source);
            ASSERT_NE(profile, nullptr);
            if (expectedCode(*profile, direction) != 0) break;
            icXform_t handle = nullptr;
            ASSERT_EQ(
                icXformGet(profile.get(), icRelativeColorimetric, icTransType{direction}, &handle),
                0);
            const OwnedXform xform(handle);
            results.push_back(
                converted(xform.get(), probes(described(xform.get()).inChannels, 16)));
            EXPECT_EQ(results.back(), results.front());
        }
    }
}

std::string plainName(const testing::TestParamInfo<std::string>& info) {
    std::string name = info.param.substr(info.param.rfind('/') + 1);
    std::replace_if(
        name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return std::to_string(info.index) + "_" + name;
}

INSTANTIATE_TEST_SUITE_P(Installed, RealProfile, testing::ValuesIn(realProfilePaths()), plainName);

// Without this, a machine that lacks the profiles would pass by testing nothing.
TEST(RealProfiles, OfAllThreePackagesAreThere) {
    const std::vector<std::string> paths = realProfilePaths();
    for (const std::string end : {"icc/ITULab.icc", "colord/sRGB.icc", "default_cmyk.icc"}) {
        EXPECT_TRUE(std::any_of(paths.begin(), paths.end(), [&](const std::string& path) {
            return path.size() > end.size() &&
                   path.compare(path.size() - end.size(), end.size(), end) == 0;
        })) << end;
    }
}

}  // namespace
