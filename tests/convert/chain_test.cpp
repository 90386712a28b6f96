// SPDX-License-Identifier: Apache-2.0
#include "convert/chain.h"

#include <cmath>

#include <gtest/gtest.h>

#include "convert/builtin_spaces.h"
#include "tests/support/engine_views.h"
#include "tests/support/profile_zoo.h"

namespace lumoxa_test {
namespace {

using namespace lumoxa::engine;
using lumoxa::fourcc;

/// A device whose tables answer one colour each, whatever is asked: what the tag's number is.
Bytes telltale() {
    ProfileBytes profile("prtr", "RGB ", "Lab ");
    for (uint16_t intent = 0; intent < 3; ++intent) {
        LutContent content;
        content.clut.assign(24, static_cast<uint16_t>((intent + 1) * 0x1000));
        const std::string number(1, static_cast<char>('0' + intent));
        profile.addTag("A2B" + number, lut16Tag(content)).addTag("B2A" + number, lut16Tag(content));
    }
    return profile.addTag("wtpt", xyzTag(0.9642, 1, 0.8249)).image();
}

Bytes identity(const char* deviceClass, const char* space) {
    return oneTagProfile(deviceClass, space, space, lut16Tag({}));
}

Chain chainOf(const std::vector<Bytes>& profiles, std::vector<icRenderingIntent> intents) {
    std::vector<std::shared_ptr<const ProfileView>> views;
    for (const Bytes& profile : profiles)
        views.push_back(viewOf(profile, static_cast<int>(views.size())));
    ChainRequest request;
    request.intents = std::move(intents);
    request.options.blackPointCompensation = false;
    return makeChain(std::move(views), request);
}

std::vector<float> answer(const Chain& chain, std::vector<float> colour = {0.2f, 0.3f, 0.4f}) {
    return through(chain.stages, colour, static_cast<size_t>(chain.outputs));
}

class IntentOfStep : public testing::TestWithParam<icRenderingIntent> {};

TEST_P(IntentOfStep, ChoosesTheTablesOnBothSides) {
    const icRenderingIntent intent = GetParam();
    const Bytes lab = builtInSpace("Lab");
    // ICC-absolute colorimetry has no tables of its own: relative ones, then white scaling.
    const icRenderingIntent tables =
        intent == icAbsoluteColorimetric ? icRelativeColorimetric : intent;
    const float number = static_cast<float>(tables) + 1;
    const float L = number * 0x1000 / 65280 * 100, device = number * 0x1000 / 65535;
    EXPECT_NEAR(answer(chainOf({telltale(), lab}, {intent}))[0], L, 1e-3);
    EXPECT_NEAR(answer(chainOf({lab, telltale()}, {intent}))[1], device, 1e-5);
    // A profile in the middle is entered by one step and left by the next.
    EXPECT_NEAR(answer(chainOf({lab, telltale(), lab}, {icSaturation, intent}))[0], L, 1e-3);
    EXPECT_NEAR(answer(chainOf({lab, telltale(), telltale()}, {icSaturation, intent}))[1], device,
                1e-5);
    EXPECT_EQ(chainOf({lab, telltale(), lab}, {icSaturation, intent}).steps[1].intent, intent);
}

INSTANTIATE_TEST_SUITE_P(Intents, IntentOfStep,
                         testing::Values(icPerceptual, icRelativeColorimetric, icSaturation,
                                         icAbsoluteColorimetric));

TEST(Chain, PassesLinksAndAbstractProfilesOfIdentity) {
    const Bytes& display = profileZoo().at("gamma");
    const Bytes lab = builtInSpace("Lab");
    const std::vector<float> wanted = answer(chainOf({display, lab}, {icRelativeColorimetric}));
    const std::vector<icRenderingIntent> two(2, icRelativeColorimetric), three(3, two[0]);
    for (const Chain& chain :
         {chainOf({identity("link", "RGB "), display, lab}, two),
          chainOf({display, identity("abst", "Lab "), lab}, two),
          chainOf({display, identity("abst", "XYZ "), identity("abst", "Lab "), lab}, three)}) {
        const std::vector<float> result = answer(chain);
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(result[c], wanted[c], 0.02);
        EXPECT_EQ(chain.inSpace, fourcc("RGB "));
        EXPECT_EQ(chain.outSpace, fourcc("Lab "));
    }
}

TEST(Chain, OfALinkAloneIsItsTable) {
    const Chain chain = chainOf({profileZoo().at("link")}, {icPerceptual});
    EXPECT_EQ(chain.inputs, 3);
    EXPECT_EQ(chain.outputs, 4);
    EXPECT_TRUE(chain.steps.empty());
    const std::vector<float> black = answer(chain, {0, 0, 0});
    const LutContent content = noisyGrid(3, 4, 5, true);
    for (size_t c = 0; c < 4; ++c)  // the output tables square
        EXPECT_NEAR(std::sqrt(black[c]), content.clut[c] / 65535.0f, 5e-3);
}

// ICC.1:2010, 6.3.2: relative to the source's white becomes relative to the destination's.
TEST(Chain, ScalesWhiteForAbsoluteColorimetryAlone) {
    const Bytes paper = withVersion(
        rgbProfile({curveTag({})}, "prtr").addTag("wtpt", xyzTag(0.4821, 0.5, 0.41245)).image(),
        0x04200000);
    const Bytes xyz = builtInSpace("XYZ");
    EXPECT_NEAR(answer(chainOf({paper, xyz}, {icRelativeColorimetric}), {1, 1, 1})[1], 1, 1e-4);
    EXPECT_NEAR(answer(chainOf({paper, xyz}, {icAbsoluteColorimetric}), {1, 1, 1})[1], 0.5, 1e-4);
    EXPECT_NEAR(
        answer(chainOf({xyz, paper}, {icAbsoluteColorimetric}), {0.24105f, 0.25f, 0.206225f})[1],
        0.5, 1e-3);
}

}  // namespace
}  // namespace lumoxa_test
