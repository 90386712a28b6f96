// SPDX-License-Identifier: Apache-2.0
//
// Proofs, gamut marks, black ink and ink limits, through the public interface, on synthetic
// presses.
#include <algorithm>
#include <numeric>

#include <gtest/gtest.h>

#include "lumoxa/lumoxa.hpp"
#include "tests/support/profile_bytes.h"

namespace {

using namespace lumoxa_test;
using lumoxa::Conversion;
using lumoxa::ImageView;
using lumoxa::Intent;
using lumoxa::Options;
using lumoxa::Profile;

/// A press of three colours and black on a grid of 5 points: inks darken L*, and C, M, Y pull a*
/// and b*. Its way back prints the grays in C, M and Y alone, and takes a* and b* to be 0.
Profile press(uint16_t blackL) {
    LutContent toLab;
    toLab.inputs = 4;
    toLab.grid = 5;
    for (int node = 0; node < 625; ++node) {
        const auto ink = [node](int step) { return (node / step % 5) * 0.25; };
        const double c = ink(125), m = ink(25), y = ink(5), k = ink(1);
        const double light = (1 - 0.3 * (c + m + y)) * (1 - k);
        toLab.clut.push_back(static_cast<uint16_t>(blackL + (65280 - blackL) * light));
        toLab.clut.push_back(static_cast<uint16_t>(32768 + 8000 * (m - c) * (1 - k)));
        toLab.clut.push_back(static_cast<uint16_t>(32768 + 8000 * (y - c) * (1 - k)));
    }
    LutContent toInk;
    toInk.outputs = 4;
    toInk.grid = 9;
    for (int node = 0; node < 729; ++node) {
        const int lightness = node / 81;
        const double dark = 1 - std::min(lightness * 65535.0 / 8 / 65280, 1.0);
        for (int ink = 0; ink < 4; ++ink)
            toInk.clut.push_back(static_cast<uint16_t>(65535 * (ink < 3 ? dark : dark * dark)));
    }
    ProfileBytes profile("prtr", "CMYK", "Lab ");
    profile.addTag("wtpt", xyzTag(0.8, 0.83, 0.68));
    for (const char* tag : {"A2B0", "A2B1"})
        profile.addTag(tag, lut16Tag(toLab));
    for (const char* tag : {"B2A0", "B2A1"})
        profile.addTag(tag, lut16Tag(toInk));
    const Bytes image = profile.image();
    return Profile::fromBytes(image.data(), image.size());
}

std::vector<uint8_t> converted(const Conversion& conversion, const std::vector<uint8_t>& pixels) {
    const auto count = static_cast<int64_t>(pixels.size()) / conversion.inputChannels();
    std::vector<uint8_t> results(static_cast<size_t>(count * conversion.outputChannels()));
    conversion.run(ImageView::packed(pixels.data(), count, 1, conversion.inputChannels()),
                   ImageView::packed(results.data(), count, 1, conversion.outputChannels()));
    return results;
}

std::vector<uint8_t> someColours(size_t samples) {
    std::vector<uint8_t> colours(samples);
    uint32_t state = 1;
    for (uint8_t& sample : colours)
        sample = static_cast<uint8_t>((state = state * 1664525 + 1013904223) >> 24);
    return colours;
}

TEST(Print, ProofIsTheChainThroughTheSimulatedPress) {
    const Profile screen = Profile::named("sRGB"), paper = press(4000);
    Options proof;
    proof.intent = Intent::Perceptual;
    proof.proof = paper;
    proof.proofIntent = Intent::Absolute;
    Options steps;
    steps.intents = {Intent::Perceptual, Intent::Absolute};
    const auto colours = someColours(3 * 500);
    const auto seen = converted(Conversion(screen, screen, proof), colours);
    EXPECT_EQ(seen, converted(Conversion({screen, paper, screen}, steps), colours));
    EXPECT_NE(seen, converted(Conversion({screen, paper, screen}), colours));
}

TEST(Print, MarksColoursThatTheProofDeviceCantReproduceAndLeavesOthers) {
    const Profile screen = Profile::named("sRGB");
    Options options;
    options.proof = press(4000);
    options.exact = true;
    const Conversion plain(screen, screen, options);
    options.markOutOfGamut = true;
    options.gamutMark = {1.0f, 0.0f, 1.0f};
    const Conversion marked(screen, screen, options);
    const std::vector<uint8_t> grays = {250, 250, 250, 128, 128, 128, 90, 90, 90};
    EXPECT_EQ(converted(marked, grays), converted(plain, grays));
    const std::vector<uint8_t> green = {0, 255, 0};
    EXPECT_EQ(converted(marked, green), (std::vector<uint8_t>{255, 0, 255}));
}

TEST(Print, KeepsBlackInkAloneAndEquallyLight) {
    const Profile from = press(4000), to = press(9000);
    Options options;
    options.preserveBlack = true;
    options.blackPointCompensation = false;
    const Conversion kept(from, to, options);
    std::vector<uint8_t> ramp;
    for (int k = 0; k < 256; ++k)
        ramp.insert(ramp.end(), {0, 0, 0, static_cast<uint8_t>(k)});
    const auto inks = converted(kept, ramp);
    options.exact = true;  // a table rounds the corner where the destination's black ends
    const auto exactInks = converted(Conversion(from, to, options), ramp);
    Options plain;
    plain.blackPointCompensation = false;
    const Profile lab = Profile::named("Lab");
    const Conversion before(from, lab, plain), after(to, lab, plain);
    for (size_t k = 0; k < 256; ++k) {
        const uint8_t* ink = &inks[4 * k];
        EXPECT_EQ(ink[0] + ink[1] + ink[2], 0) << k;
        EXPECT_GE(ink[3], k > 0 ? inks[4 * k - 1] : 0) << k;
        const float wanted = before({0, 0, 0, static_cast<float>(k) / 255})[0];
        const float darkest = after({0, 0, 0, 1})[0];
        const float black = static_cast<float>(exactInks[4 * k + 3]) / 255;
        EXPECT_NEAR(after({0, 0, 0, black})[0], std::max(wanted, darkest), 0.3) << k;
    }
    EXPECT_GT(converted(Conversion(from, to, plain), {0, 0, 0, 128})[0], 0);
}

class InkLimit : public testing::TestWithParam<float> {};

TEST_P(InkLimit, IsNeverExceededInPicturesOrInLinks) {
    const Profile screen = Profile::named("sRGB"), paper = press(4000);
    Options options;
    options.inkLimit = GetParam();
    const Conversion limited(screen, paper, options);
    const Conversion link({lumoxa::makeLink({screen, paper}, options)});
    auto colours = someColours(3 * 5000);
    std::fill_n(colours.begin(), 3, uint8_t{0});
    const auto inks = converted(limited, colours);
    EXPECT_EQ(converted(link, colours), inks);
    int most = 0;
    for (size_t i = 0; i < inks.size(); i += 4)
        most = std::max(most, std::accumulate(&inks[i], &inks[i] + 4, 0));
    EXPECT_LE(most, GetParam() * 2.55f);
    EXPECT_GT(most, GetParam() * 2.55f - 6);  // no more is taken than rounding may add
}

INSTANTIATE_TEST_SUITE_P(Percents, InkLimit, testing::Values(120.0f, 200.0f, 320.0f),
                         [](const auto& info) { return std::to_string(int(info.param)); });

TEST(Print, SaysWhichChainsHaveNoPlaceForAnOption) {
    const Profile screen = Profile::named("sRGB"), paper = press(4000);
    const auto sentence = [](const std::vector<Profile>& chain, const Options& options) {
        try {
            Conversion{chain, options};
        } catch (const lumoxa::Error& error) {
            EXPECT_EQ(error.code(), LMX_ERR_INVALID);
            return std::string(error.what());
        }
        return std::string();
    };
    Options black, ink, mark;
    black.preserveBlack = true;
    ink.inkLimit = 300;
    mark.markOutOfGamut = true;
    EXPECT_NE(sentence({screen, paper}, black).find("from CMYK to CMYK"), std::string::npos);
    EXPECT_NE(sentence({paper, screen}, ink).find("inks"), std::string::npos);
    ink.inkLimit = 401;
    EXPECT_NE(sentence({screen, paper}, ink).find("400 percent"), std::string::npos);
    const Profile link = lumoxa::makeLink({screen, paper});
    EXPECT_NE(sentence({link}, mark).find("device link"), std::string::npos);
}

}  // namespace
