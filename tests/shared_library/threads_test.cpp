// SPDX-License-Identifier: Apache-2.0
#include <thread>

#include "tests/support/gray_asks.h"
#include "tests/support/seeded_random.h"

namespace lumoxa_test {
namespace {

OwnedXform made(const OwnedProfile& profile) {
    return Ask{}.from(profile, icPerceptual, icDeviceToPcs);
}

// One profile, the transform that all threads share, what it makes of some pixels.
struct Conversion {
    OwnedProfile profile;
    OwnedXform shared = made(profile);
    Samples pixels = SeededRandom(7).samples(size_t{20000} * described(shared.get()).inChannels);
    Samples expected = converted(shared.get(), pixels);
};

// Every thread converts through the shared transform and through one that it makes itself, and
// the library divides each conversion over threads of its own.
TEST(Threads, GiveWhatOneGives) {
    const Samples clut = SeededRandom(4).samples(power(5, 4) * 3);
    const ProfileBytes press = lutProfile(gridTag(4, 3, 5, clut), "CMYK", "RGB "),
                       scanner = lutProfile(gridTag(3, 3, 5, {clut.begin(), clut.begin() + 375}),
                                            "RGB ", "RGB ");
    const Conversion conversions[] = {{loaded(rgbProfile({curveTag({563})}, "mntr").image())},
                                      {loaded(scanner.image())},
                                      {loaded(press.image())},
                                      {loaded(grayProfile().image())},
                                      {loaded(grayProfile(9, 8).image())}};
    constexpr size_t kThreadsOfEach = 2, kRounds = 3, kKinds = std::size(conversions);
    std::vector<std::vector<Samples>> results(kThreadsOfEach * kKinds);
    std::vector<std::thread> threads;
    for (std::vector<Samples>& result : results) {
        const auto index = static_cast<size_t>(&result - results.data());
        const Conversion& c = conversions[index % kKinds];
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
        const std::vector<Samples> same(2 * kRounds, conversions[i % kKinds].expected);
        EXPECT_TRUE(results[i] == same) << i;
    }
}

}  // namespace
}  // namespace lumoxa_test
