// SPDX-License-Identifier: Apache-2.0
//
// The interface for C against the C++ functions that it stands for.
#include "lumoxa/lmx.h"

#include <cstring>
#include <functional>
#include <numeric>

#include "tests/support/real_profiles.h"
#include "tests/support/seeded_random.h"
#include "tests/support/temp_file.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

constexpr uint32_t kLink = LMX_SIGNATURE('l', 'i', 'n', 'k');
constexpr uint32_t kRgb = LMX_SIGNATURE('R', 'G', 'B', ' ');
constexpr uint32_t kCmyk = LMX_SIGNATURE('C', 'M', 'Y', 'K');

OwnedProfile loadedByC(const Bytes& image) {
    lmx_profile* profile = nullptr;
    EXPECT_EQ(lmx_profile_load(image.data(), image.size(), &profile), 0);
    return OwnedProfile(profile);
}

OwnedXform gotByC(const OwnedProfile& profile, uint32_t intent, uint32_t direction) {
    lmx_transform* transform = nullptr;
    EXPECT_EQ(lmx_transform_get(profile.get(), intent, direction, &transform), 0);
    return OwnedXform(transform);
}

/// From a display to a press, by the interface for C all the way, and by the other.
class LmxTest : public testing::Test {
  protected:
    const Bytes display_ = realProfile("colord/sRGB.icc");
    const Bytes press_ = realProfile("ghostscript/default_cmyk.icc");
    const OwnedXform first_ = gotByC(loadedByC(display_), LMX_RELATIVE_COLORIMETRIC, 1);
    const OwnedXform second_ = gotByC(loadedByC(press_), LMX_RELATIVE_COLORIMETRIC, 2);

    OwnedXform combinedByC(int32_t options, lmx_progress progress = nullptr, void* user = nullptr,
                           int32_t code = 0) const {
        lmx_transform* const chain[] = {first_.get(), second_.get()};
        lmx_transform* made = nullptr;
        EXPECT_EQ(lmx_combine(2, chain, options, &made, nullptr, progress, user), code);
        EXPECT_EQ(made != nullptr, code == 0);
        return OwnedXform(made);
    }
};

Bytes packedByC(lmx_transform* transform, Bytes rgb) {
    Bytes inks(rgb.size() / 3 * 4);
    EXPECT_EQ(lmx_evaluate_packed(transform, rgb.data(), LMX_SAMPLES_8, inks.data(), LMX_SAMPLES_8,
                                  static_cast<int32_t>(rgb.size() / 3)),
              0);
    return inks;
}

TEST_F(LmxTest, ConvertsAsTheCppInterface) {
    ASSERT_EQ(lmx_abi_version(), LMX_ABI_VERSION);
    OwnedXform from, to;
    ASSERT_EQ(request(display_, icRelativeColorimetric, icDeviceToPcs, from), 0);
    ASSERT_EQ(request(press_, icRelativeColorimetric, icPcsToDevice, to), 0);
    const Samples pixels = SeededRandom(11).samples(3000, 255);
    const Bytes rgb(pixels.begin(), pixels.end());
    for (const int options : {0, 3}) {
        const OwnedXform expected = combined({from.get(), to.get()}, options);
        const OwnedXform made = combinedByC(options);
        const Samples inks = converted(expected.get(), pixels, 8, 8);
        EXPECT_EQ(packedByC(made.get(), rgb), Bytes(inks.begin(), inks.end())) << options;
    }
    lmx_transform_info info = {};
    ASSERT_EQ(lmx_transform_describe(combinedByC(0).get(), &info), 0);
    EXPECT_EQ(info.intent, 1U);
    EXPECT_EQ(info.direction, uint32_t{LMX_COMBINED});
    EXPECT_TRUE(info.in_channels == 3 && info.out_channels == 4);
    EXPECT_EQ(info.kind, LMX_SIGNATURE('m', 'f', 't', '2'));
    EXPECT_TRUE(info.in_space == kRgb && info.out_space == kCmyk);
}

// Planes of 16 bits, lines from the bottom up: every field of the record counts.
TEST_F(LmxTest, ReadsEveryFieldOfALayout) {
    constexpr int kPixels = 7, kLines = 5, kPlane = kPixels * kLines;
    const OwnedXform made = combinedByC(LMX_COMBINE_COLORIMETRIC);
    Samples rgb = SeededRandom(12).samples(3 * kPlane), packedRgb(3 * kPlane);
    for (int i = 0; i < 3 * kPlane; ++i) {
        const int pixel = i / 3, line = kLines - 1 - pixel / kPixels;
        packedRgb[i] = rgb[i % 3 * kPlane + line * kPixels + pixel % kPixels];
    }
    Bytes inks(4 * kPlane);
    lmx_pixel_layout source = {LMX_SAMPLES_16, 0, kPixels, kLines, 2, -2 * kPixels, 3, {}};
    const lmx_pixel_layout destination = {LMX_SAMPLES_8, 1, kPixels,      kLines, 4,
                                          4 * kPixels,   4, {inks.data()}};
    for (int c = 0; c < 3; ++c)
        source.channel_data[c] = &rgb[c * kPlane + (kLines - 1) * kPixels];
    Listener listener;
    listener.atEnd = 42;
    const auto hear = [](int32_t state, int32_t percent, void* user) -> int32_t {
        return Listener::hear(static_cast<icIterState>(state), percent, user);
    };
    ASSERT_EQ(lmx_evaluate(made.get(), &source, &destination, hear, &listener), 42);
    EXPECT_EQ(listener.calls,
              (Calls{{1, 0}, {2, 0}, {2, 20}, {2, 40}, {2, 60}, {2, 80}, {3, 100}}));
    const Samples expected = converted(made.get(), packedRgb, 16, 8);
    EXPECT_EQ(inks, Bytes(expected.begin(), expected.end()));

    Listener impatient;
    impatient.atEnd = 77;
    impatient.stopAfter = 0;
    combinedByC(0, hear, &impatient, 77);
}

TEST_F(LmxTest, KeepsADeviceLinkOnTheWayToAFileAndBack) {
    const OwnedXform made = combinedByC(LMX_COMBINE_COLORIMETRIC);
    lmx_profile* created = nullptr;
    ASSERT_EQ(lmx_profile_create(&created), 0);
    const OwnedProfile profile(created);
    lmx_header header = {};
    ASSERT_EQ(lmx_profile_get_header(created, &header), 0);
    header.device_class = kLink, header.color_space = kRgb, header.pcs = kCmyk;
    ASSERT_EQ(lmx_profile_set_header(created, &header), 0);
    const std::string copyright("text\0\0\0\0Nobody\0", 15);
    ASSERT_EQ(lmx_profile_set_description(created, "replaced"), 0);
    ASSERT_EQ(lmx_profile_set_description(created, "sRGB to press"), 0);
    ASSERT_EQ(lmx_profile_add_tag(created, LMX_SIGNATURE('c', 'p', 'r', 't'), copyright.data(), 15),
              0);
    ASSERT_EQ(lmx_profile_store(created, LMX_PERCEPTUAL, LMX_DEVICE_TO_PCS, made.get()), 0);
    const TempFile file({});
    ASSERT_EQ(lmx_profile_save(created, file.path().c_str()), 0);

    const OwnedProfile link = loadedByC(fileBytes(file.path()));
    char text[40] = {};
    EXPECT_EQ(lmx_profile_description(link.get(), text, sizeof text), 0);
    EXPECT_STREQ(text, "sRGB to press");
    EXPECT_EQ(icGetCopyright(link.get(), text, sizeof text), 0);
    EXPECT_STREQ(text, "Nobody");
    lmx_header stored = {};
    ASSERT_EQ(lmx_profile_get_header(link.get(), &stored), 0);
    EXPECT_EQ(stored.size, (fileBytes(file.path()).size() + 3) / 4 * 4);
    stored.size = header.size = 0;
    EXPECT_EQ(std::memcmp(&stored, &header, sizeof header), 0);
    Bytes rgb(3 * 256);
    std::iota(rgb.begin(), rgb.end(), uint8_t{0});
    EXPECT_EQ(packedByC(gotByC(link, LMX_PERCEPTUAL, LMX_DEVICE_TO_PCS).get(), rgb),
              packedByC(made.get(), rgb));
}

TEST_F(LmxTest, KeepsATransformThatHasAnotherHolder) {
    const OwnedXform made = combinedByC(0);
    const Bytes rgb = {255, 0, 0}, inks = packedByC(made.get(), rgb);
    lmx_transform_hold(made.get());
    lmx_transform_free(made.get());
    EXPECT_EQ(packedByC(made.get(), rgb), inks);
}

TEST_F(LmxTest, RefusesNullAndGarbageArguments) {
    const OwnedProfile owned = loadedByC(display_);
    lmx_profile* const p = owned.get();
    lmx_transform* const t = first_.get();
    lmx_transform* const chain[] = {t, second_.get()};
    lmx_transform* const backwards[] = {second_.get(), t};
    lmx_transform* const holed[] = {t, nullptr};
    const Bytes garbage(4000, 'x');
    char text[64];
    unsigned char sample[8] = {};
    lmx_header header = {};  // without the magic
    lmx_transform_info info;
    lmx_pixel_layout layout = {LMX_SAMPLES_8, 1, 1, 1, 3, 3, 3, {sample}}, empty = layout;
    empty.channel_data[0] = nullptr;
    lmx_profile* profile = p;
    lmx_transform* made = t;
    int32_t link = 0;
    const struct {
        int32_t code;
        std::function<int32_t()> call;
    } cases[] = {
        {503, [&] { return lmx_error_text(503, nullptr, 9); }},
        {520, [&] { return lmx_profile_load(nullptr, 9, &profile); }},
        {503, [&] { return lmx_profile_load(display_.data(), display_.size(), nullptr); }},
        {512, [&] { return lmx_profile_load(display_.data(), display_.size() / 2, &profile); }},
        {503, [&] { return lmx_profile_load(garbage.data(), garbage.size(), &profile); }},
        {503, [&] { return lmx_profile_create(nullptr); }},
        {503, [&] { return lmx_profile_description(nullptr, text, sizeof text); }},
        {509, [&] { return lmx_profile_description(p, text, 0); }},
        {503, [&] { return lmx_profile_get_header(nullptr, &header); }},
        {503, [&] { return lmx_profile_get_header(p, nullptr); }},
        {503, [&] { return lmx_profile_set_header(p, nullptr); }},
        {503, [&] { return lmx_profile_set_header(nullptr, &header); }},
        {503, [&] { return lmx_profile_set_header(p, &header); }},
        {503, [&] { return lmx_profile_set_description(nullptr, "text"); }},
        {503, [&] { return lmx_profile_set_description(p, nullptr); }},
        {520, [&] { return lmx_profile_add_tag(p, 1, nullptr, 4); }},
        {503, [&] { return lmx_profile_store(nullptr, 0, 1, t); }},
        {507, [&] { return lmx_profile_store(p, 0, 1, t); }},  // curves and a matrix
        {503, [&] { return lmx_profile_store(p, 9, 1, second_.get()); }},
        {503, [&] { return lmx_profile_save(nullptr, "never-made.icc"); }},
        {503, [&] { return lmx_profile_save(p, nullptr); }},
        {513, [&] { return lmx_profile_save(p, "no-such-folder/link.icc"); }},
        {503, [&] { return lmx_transform_get(nullptr, 1, 1, &made); }},
        {503, [&] { return lmx_transform_get(p, 1, 1, nullptr); }},
        {503, [&] { return lmx_transform_describe(nullptr, &info); }},
        {503, [&] { return lmx_transform_describe(t, nullptr); }},
        {503, [&] { return lmx_combine(2, nullptr, 0, &made, nullptr, nullptr, nullptr); }},
        {503, [&] { return lmx_combine(2, chain, 0, nullptr, nullptr, nullptr, nullptr); }},
        {503, [&] { return lmx_combine(2, holed, 0, &made, &link, nullptr, nullptr); }},
        {507, [&] { return lmx_combine(2, backwards, 0, &made, &link, nullptr, nullptr); }},
        {503, [&] { return lmx_evaluate(nullptr, &layout, &layout, nullptr, nullptr); }},
        {503, [&] { return lmx_evaluate(t, nullptr, &layout, nullptr, nullptr); }},
        {503, [&] { return lmx_evaluate(t, &layout, nullptr, nullptr, nullptr); }},
        {503, [&] { return lmx_evaluate(t, &layout, &empty, nullptr, nullptr); }},
        {503, [&] { return lmx_evaluate_packed(t, nullptr, 1, sample, 5, 1); }},
        {0, [&] { return lmx_evaluate_packed(t, sample, 1, sample, 5, -1); }},
    };
    for (size_t i = 0; i < std::size(cases); ++i)
        EXPECT_EQ(cases[i].call(), cases[i].code) << "case " << i;
    EXPECT_EQ(link, 1);
    EXPECT_EQ(profile, nullptr);
    EXPECT_EQ(made, nullptr);
    lmx_profile_free(nullptr);
    lmx_transform_hold(nullptr);
    lmx_transform_free(nullptr);
}

}  // namespace
}  // namespace lumoxa_test
