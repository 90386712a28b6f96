// SPDX-License-Identifier: Apache-2.0
//
// Profiles whose bytes are anything: each converts, or is refused with a sentence.
#include <gtest/gtest.h>

#include "tests/support/mutations.h"
#include "tests/support/profile_zoo.h"

namespace lumoxa_test {
namespace {

class HostileProfiles : public testing::TestWithParam<std::pair<const std::string, Bytes>> {};

TEST_P(HostileProfiles, ConvertOrAreRefused) {
    constexpr int kRounds = 25;
    SeededRandom random(static_cast<uint32_t>(GetParam().second.size()));
    for (int i = 0; i < kRounds; ++i)
        convertsOrFaults(mutated(GetParam().second, random), random);
}

INSTANTIATE_TEST_SUITE_P(Zoo, HostileProfiles, testing::ValuesIn(profileZoo()),
                         [](const auto& entry) { return entry.param.first; });

}  // namespace
}  // namespace lumoxa_test
