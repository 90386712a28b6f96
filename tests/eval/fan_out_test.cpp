// SPDX-License-Identifier: Apache-2.0
#include "eval/fan_out.h"

#include <algorithm>
#include <map>
#include <system_error>

#include <gtest/gtest.h>

namespace lumoxa_test {
namespace {

// Works at once, until more threads have been asked for than there are.
struct ScarceThread {
    static inline int left = 0;
    template <class Work>
    explicit ScarceThread(const Work& work) {
        if (left-- == 0) throw std::system_error(EAGAIN, std::generic_category());
        work();
    }
    void join() {}
};

TEST(FanOut, LosesItemsWhenThreadsRunOut) {
    for (const int64_t items : {-3, 0, 1, 3, 23}) {
        for (int available = 0; available <= 4; ++available) {
            ScarceThread::left = available;
            std::map<int64_t, int64_t> slices;  // first item to count
            lumoxa::fanOut<ScarceThread>(items, 4, [&](int64_t first, int64_t count) {
                EXPECT_TRUE(slices.emplace(first, count).second);
            });
            int64_t next = 0;
            for (const auto& [first, count] : slices) {
                EXPECT_EQ(first, next);
                EXPECT_GT(count, 0);
                next += count;
            }
            EXPECT_EQ(next, std::max<int64_t>(items, 0)) << available;
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
