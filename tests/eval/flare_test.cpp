// SPDX-License-Identifier: Apache-2.0
#include "eval/flare.h"

#include <gtest/gtest.h>

#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

TEST(Flare, ReadsTheTableOfAnotherChannel) {
    for (const uint32_t channels : {1U, 3U, 4U}) {
        SeededRandom random(channels);
        const Samples tables = random.samples(channels * lumoxa::kFlareTableSize);
        const Samples in = random.samples(channels * 101);
        const auto state = lumoxa::makeFlare(channels, tables.data());
        Samples out(in.size());
        lumoxa::convertFlare(state.get(), in.data(), out.data(), 101);
        for (size_t i = 0; i < in.size(); ++i) {
            EXPECT_EQ(out[i], tables[i % channels * lumoxa::kFlareTableSize + in[i]]) << i;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
