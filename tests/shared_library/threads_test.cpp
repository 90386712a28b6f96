// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

Bytes gridProfile(uint32_t inputs) {
    const Samples clut = SeededRandom(inputs).samples(power(5, inputs) * 3);
    return lutProfile(gridTag(inputs, 3, 5, clut), inputs == 3 ? "RGB " : "CMYK", "RGB ").image();
}

OwnedXform made(const OwnedProfile& profile) {
    icXform_t xform = nullptr;
    EXPECT_EQ(icXformGet(profile.get(), icPerceptual, icDeviceToPcs, &xform), 0);
    return OwnedXform(xform);
}

// One profile, the transform that all threads share, what it makes of some pixels.
struct Conversion {
    explicit Conversion(const Bytes& image, uint32_t inputs) : profile(loaded(image)) {
        pixels = SeededRandom(7).samples(size_t{20000} * inputs);
        expected = converted(shared.get(), pixels);
    }
    OwnedProfile profile;
    OwnedXform shared = made(profile);
    Samples pixels, expected;
};

// Every thread converts through the shared transform and through one that it makes itself, and
// the library divides each conversion over threads of its own.
TEST(Threads, DisturbEachOther) {
    std::vector<Conversion> conversions;
    conversions.emplace_back(rgbProfile({curveTag({563})}, "mntr").image(), 3);
    conversions.emplace_back(gridProfile(3), 3);
    conversions.emplace_back(gridProfile(4), 4);
    constexpr size_t kThreadsOfEach = 2, kRounds = 3;
    std::vector<std::vector<Samples>> results(kThreadsOfEach * conversions.size());
    std::vector<std::thread> threads;
    for (std::vector<Samples>& result : results) {
        const auto index = static_cast<size_t>(&result - results.data());
        const Conversion& c = conversions[index % conversions.size()];
        threads.emplace_back([&result, &c] {
            for (size_t round = 0; round < kRounds; ++round) {
                result.push_back(converted(c.shared.get(), c.pixels));
                result.push_back(converted(made(c.profile).get(), c.pixels));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (size_t i = 0; i < results.size(); ++i) {
        const std::vector<Samples> same(2 * kRounds, conversions[i % conversions.size()].expected);
        EXPECT_TRUE(results[i] == same) << i;
    }
}

}  // namespace
}  // namespace lumoxa_test
