// SPDX-License-Identifier: Apache-2.0
//
// Combined transforms against Little CMS, in Delta E*ab over cubes of 17 levels a channel. The
// limits are 0.5 in the mean and 3 at most; docs/accuracy.md explains the cases that have wider
// ones.
#if defined(LUMOXA_HAVE_LCMS2)

#include <cmath>
#include <cstdio>
#include <string>

#include <lcms2.h>

#include "tests/support/real_profiles.h"
#include "tests/support/xforms.h"

namespace {

using namespace lumoxa_test;

struct Levels {
    double first, last;
};
constexpr Levels kWhole = {0, 65535};
// The levels of the whole cube are nodes of a 33-point grid too, which makes it look better than it
// is; these lie between the nodes.
constexpr Levels kBetween = {1928, 63607};
constexpr Levels kShadows = {0, 4096};

struct Case {
    const char* name;
    const char* source;  // ends of the profiles' paths
    const char* target;
    Levels levels;
    double mean = 0.5, largest = 3;  // limits

    friend void PrintTo(const Case& test, std::ostream* out) { *out << test.name; }
};

using PeerProfile = std::unique_ptr<void, Release<cmsCloseProfile>>;
using PeerTransform = std::unique_ptr<void, Release<cmsDeleteTransform>>;

PeerProfile peerProfile(const Bytes& image) {
    return PeerProfile(
        cmsOpenProfileFromMem(image.data(), static_cast<cmsUInt32Number>(image.size())));
}

cmsUInt32Number format16(const PeerProfile& profile) {
    return cmsFormatterForColorspaceOfProfile(profile.get(), 2, 0);
}

// Each stage by itself, in floating point: what the profiles say, free of the peer's own grids.
PeerTransform exactly(const PeerProfile& from, const PeerProfile& to, cmsUInt32Number outFormat) {
    return PeerTransform(cmsCreateTransform(from.get(), format16(from), to.get(), outFormat,
                                            INTENT_RELATIVE_COLORIMETRIC,
                                            cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
}

Samples cube(uint32_t channels, Levels levels) {
    Samples samples;
    const uint32_t points = channels == 4 ? 17 * 17 * 17 * 17 : 17 * 17 * 17;
    for (uint32_t point = 0; point < points; ++point) {
        for (uint32_t c = 0, rest = point; c < channels; ++c, rest /= 17) {
            const double level = levels.first + (levels.last - levels.first) * (rest % 17) / 16;
            samples.push_back(static_cast<uint16_t>(level + 0.5));
        }
    }
    return samples;
}

class PeerAccuracy : public testing::TestWithParam<Case> {};

TEST_P(PeerAccuracy, StaysWithinTheDocumentedDifference) {
    const Bytes sourceImage = realProfile(GetParam().source);
    const Bytes targetImage = realProfile(GetParam().target);
    const PeerProfile source = peerProfile(sourceImage), target = peerProfile(targetImage);
    const PeerProfile lab(cmsCreateLab4Profile(nullptr));
    OwnedXform from, to;
    ASSERT_EQ(request(sourceImage, icRelativeColorimetric, icDeviceToPcs, from), 0);
    ASSERT_EQ(request(targetImage, icRelativeColorimetric, icPcsToDevice, to), 0);
    const OwnedXform ours = combined({from.get(), to.get()}, icCombineColorimetric);

    const icXformDesc_t desc = described(ours.get());
    const Samples pixels = cube(desc.inChannels, GetParam().levels);
    const auto count = static_cast<cmsUInt32Number>(pixels.size() / desc.inChannels);
    const Samples mine = converted(ours.get(), pixels);
    Samples theirs(mine.size());
    cmsDoTransform(exactly(source, target, format16(target)).get(), pixels.data(), theirs.data(),
                   count);

    // Both results are seen through one path, that of the target profile.
    const PeerTransform toLab = exactly(target, lab, TYPE_Lab_DBL);
    std::vector<cmsCIELab> myLab(count), theirLab(count);
    cmsDoTransform(toLab.get(), mine.data(), myLab.data(), count);
    cmsDoTransform(toLab.get(), theirs.data(), theirLab.data(), count);

    double mean = 0, largest = 0;
    for (size_t i = 0; i < count; ++i) {
        const double difference = cmsDeltaE(&myLab[i], &theirLab[i]);
        mean += difference / count;
        largest = std::max(largest, difference);
    }
    std::printf("[ DeltaE   ] %-30s mean %.3f  largest %.3f\n", GetParam().name, mean, largest);
    EXPECT_LE(mean, GetParam().mean);
    EXPECT_LE(largest, GetParam().largest);
}

constexpr char kSrgb[] = "ghostscript/srgb.icc";
constexpr char kParametricSrgb[] = "colord/sRGB.icc";
constexpr char kAdobeRgb[] = "colord/AdobeRGB1998.icc";
constexpr char kCmyk[] = "ghostscript/default_cmyk.icc";

INSTANTIATE_TEST_SUITE_P(RelativeColorimetric, PeerAccuracy,
                         testing::Values(Case{"SrgbToAdobeRgb", kSrgb, kAdobeRgb, kWhole},
                                         Case{"SrgbToAdobeRgbShadows", kSrgb, kAdobeRgb, kShadows},
                                         Case{"ParametricSrgbToAdobeRgbShadows", kParametricSrgb,
                                              kAdobeRgb, kShadows, 2.5, 5.5},
                                         Case{"AdobeRgbToSrgb", kAdobeRgb, kSrgb, kWhole, 3.5, 18},
                                         Case{"SrgbToCmyk", kSrgb, kCmyk, kWhole},
                                         Case{"SrgbToCmykBetweenNodes", kSrgb, kCmyk, kBetween},
                                         Case{"CmykToSrgb", kCmyk, kSrgb, kWhole},
                                         Case{"CmykToSrgbBetweenNodes", kCmyk, kSrgb, kBetween, 0.5,
                                              4}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace

#endif
