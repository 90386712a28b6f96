// SPDX-License-Identifier: Apache-2.0
#include "tests/support/mutations.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>

#include <gtest/gtest.h>

#include "lumoxa/lmx.h"
#include "tests/support/profile_zoo.h"

namespace lumoxa_test {
namespace {

struct Free {
    void operator()(lmx_profile* profile) const { lmx_profile_free(profile); }
    void operator()(lmx_conversion* conversion) const { lmx_conversion_free(conversion); }
    void operator()(char* text) const { lmx_free(text); }
};
using ProfileHandle = std::unique_ptr<lmx_profile, Free>;
using ConversionHandle = std::unique_ptr<lmx_conversion, Free>;

constexpr uint32_t kNumbers[] = {0,          1,          2,          3,          15,
                                 16,         255,        256,        0xFFFF,     0x10000,
                                 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 0xFFFFFFFC, 0x00010000};
constexpr char kSignatures[] =
    "mft1mft2mAB mBA curvparaXYZ RGB CMYKGRAYLab 2CLR6CLRFCLRlinkabstnmclmntrprtrspacA2B0A2B1B2A0"
    "kTRCwzgdwtptdesctext";

uint32_t anyNumber(SeededRandom& random) {
    if (random.upTo(3) == 0) return uint32_t{random.upTo(65535)} << 16 | random.upTo(65535);
    return kNumbers[random.upTo(std::size(kNumbers) - 1)];
}

size_t anyPlace(const Bytes& profile, SeededRandom& random) {
    const uint32_t place = uint32_t{random.upTo(65535)} << 16 | random.upTo(65535);
    const auto size = static_cast<uint32_t>(profile.size());
    switch (random.upTo(3)) {
        case 0:
            return place % std::min(size, 128U);  // the header
        case 1:
            return place % std::min(size, 300U);  // the tag table, too
        case 2: {                                 // where a tag begins: type, counts, offsets
            const size_t entry = 132 + 12 * size_t{random.upTo(8)} + 4;
            if (entry + 4 > size) return 0;
            size_t at = 0;
            for (size_t i = 0; i < 4; ++i)
                at = at << 8 | profile[entry + i];
            return (at + random.upTo(60)) % size;
        }
        default:
            return place % size;
    }
}

void mutate(Bytes& profile, SeededRandom& random) {
    const size_t at = anyPlace(profile, random);
    const size_t aligned = std::min(at / 4 * 4, profile.size() - 4);
    switch (random.upTo(7)) {
        case 0:
            profile.resize(std::max<size_t>(at, 4));
            return;
        case 1:
            put32(profile, aligned, anyNumber(random));
            return;
        case 2:
            std::memcpy(&profile[aligned],
                        kSignatures + 4 * random.upTo((sizeof kSignatures - 1) / 4 - 1), 4);
            return;
        case 3:
            profile[at] = static_cast<uint8_t>(kNumbers[random.upTo(6)]);
            return;
        case 4:  // one tag in the place of another
            if (at % 2 == 0 && profile.size() > 156)
                std::copy_n(profile.begin() + 136, 8, profile.begin() + 148);
            return;
        case 5:
            profile[at] = static_cast<uint8_t>(profile[at] ^ 1U << random.upTo(7));
            return;
        default:
            profile[at] = static_cast<uint8_t>(random.upTo(255));
    }
}

void expectFault(int32_t code, const lmx_fault& fault) {
    if (code == LMX_SUCCESS) return;
    EXPECT_EQ(fault.code, code);
    EXPECT_NE(fault.sentence[0], '\0');
}

void runAll(lmx_conversion* conversion, SeededRandom& random) {
    constexpr int32_t kTypes[] = {LMX_SAMPLES_8, LMX_SAMPLES_16, LMX_SAMPLES_F32};
    constexpr int32_t kBytes[] = {1, 2, 4};
    constexpr int64_t kPixels = 16;
    int32_t channels[2];
    ASSERT_EQ(lmx_conversion_channels(conversion, channels, channels + 1), LMX_SUCCESS);
    Bytes pixels[2];
    std::vector<float> colour(15), result(15);
    for (int in = 0; in < 3; ++in) {
        for (int out = 0; out < 3; ++out) {
            lmx_image images[2] = {};
            for (int side = 0; side < 2; ++side) {
                const int type = side == 0 ? in : out;
                const int64_t pixel = int64_t{channels[side]} * kBytes[type];
                pixels[side].resize(static_cast<size_t>(kPixels * pixel));
                for (uint8_t& byte : pixels[side])
                    byte = static_cast<uint8_t>(random.upTo(255));
                images[side] = {sizeof(lmx_image),
                                kTypes[type],
                                pixels[side].data(),
                                kPixels,
                                1,
                                channels[side],
                                0,
                                kBytes[type],
                                pixel,
                                kPixels * pixel};
            }
            lmx_fault fault = {sizeof fault};
            ASSERT_EQ(lmx_conversion_run(conversion, images, images + 1, nullptr, &fault), 0)
                << fault.sentence;
        }
    }
    for (float& sample : colour)
        sample = random.upTo(3) == 0 ? std::numeric_limits<float>::infinity() : random.upTo(255);
    EXPECT_EQ(lmx_conversion_pixel(conversion, colour.data(), result.data(), nullptr), 0);
    char* json = nullptr;
    EXPECT_EQ(lmx_conversion_explain(conversion, &json, nullptr), 0);
    const std::unique_ptr<char, Free> owner(json);
}

/// Chains around a profile: alone, from and to other spaces, between them.
std::vector<lmx_profile*> chainAround(lmx_profile* profile, lmx_profile* other, uint32_t shape) {
    switch (shape) {
        case 0:
            return {profile};
        case 1:
            return {profile, other};
        case 2:
            return {other, profile};
        case 3:
            return {other, profile, other};
        default:
            return {profile, profile};
    }
}

lmx_profile* another(SeededRandom& random) {
    const char* const names[] = {"sRGB", "Lab", "XYZ", "gray", ""};
    const char* const name = names[random.upTo(4)];
    lmx_profile* other = nullptr;
    if (*name != '\0') {
        EXPECT_EQ(lmx_profile_named(name, &other, nullptr), 0);
    } else {
        const Bytes& press = profileZoo().at("press");
        EXPECT_EQ(lmx_profile_from_bytes(press.data(), press.size(), &other, nullptr), 0);
    }
    return other;
}

}  // namespace

Bytes mutated(Bytes profile, SeededRandom& random) {
    for (int left = 1 + random.upTo(3); left > 0; --left)
        mutate(profile, random);
    return profile;
}

bool convertsOrFaults(const Bytes& bytes, SeededRandom& random) {
    lmx_fault fault = {sizeof fault};
    lmx_profile* loaded = nullptr;
    int32_t code = lmx_profile_from_bytes(bytes.data(), bytes.size(), &loaded, &fault);
    expectFault(code, fault);
    if (code != LMX_SUCCESS) return false;
    const ProfileHandle profile(loaded), other(another(random));
    const auto chain = chainAround(profile.get(), other.get(), random.upTo(4));
    lmx_options options;
    lmx_options_init(&options);
    options.intent = random.upTo(3);
    options.black_point_compensation = random.upTo(1);
    options.exact = random.upTo(7) != 0;
    options.proof = random.upTo(7) == 0 ? profile.get() : nullptr;
    options.mark_out_of_gamut = random.upTo(7) == 0;
    options.preserve_black = random.upTo(7) == 0;
    options.ink_limit = random.upTo(7) == 0 ? 200 : 0;
    const auto count = static_cast<int32_t>(chain.size());
    lmx_conversion* made = nullptr;
    code = lmx_conversion_create(chain.data(), count, &options, &made, &fault);
    expectFault(code, fault);
    const ConversionHandle conversion(made);
    if (made != nullptr) runAll(made, random);
    if (random.upTo(31) == 0) {
        lmx_profile* link = nullptr;
        const int32_t precision = random.upTo(1) == 0 ? LMX_SAMPLES_8 : LMX_SAMPLES_16;
        expectFault(lmx_make_link(chain.data(), count, &options, precision, &link, &fault), fault);
        const ProfileHandle owner(link);
    }
    return made != nullptr;
}

}  // namespace lumoxa_test
