// SPDX-License-Identifier: Apache-2.0
#include "base/fan_out.h"

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

TEST(FanOut, CoversEachItemOnceWhenThreadsRunOut) {
    for (const int64_t items : {-3, 0, 1, 3, 23}) {
        for (int available = 0; available <= 4; ++available) {
            std::map<int64_t, int64_t> alone, withCaller;  // first item of a slice to count
            ScarceThread::left = available;
            lumoxa::fanOut<ScarceThread>(items, 4, [&](int64_t first, int64_t count) {
                EXPECT_TRUE(alone.emplace(first, count).second);
            });
            ScarceThread::left = available;
            lumoxa::fanOutWithCaller<ScarceThread>(
                items, 4, [&](int64_t slice, int64_t first, int64_t count) {
                    EXPECT_EQ(slice, std::ssize(withCaller));
                    EXPECT_TRUE(withCaller.emplace(first, count).second);
                });
            const int64_t all = std::max<int64_t>(items, 0);
            for (const auto& slices : {alone, withCaller}) {
                int64_t next = 0;
                for (const auto& [first, count] : slices) {
                    EXPECT_EQ(first, next);
                    EXPECT_GT(count, 0);
                    next += count;
                }
                EXPECT_EQ(next, all) << available;
            }
            EXPECT_EQ(std::ssize(withCaller), std::min({all, int64_t{4}, int64_t{available} + 1}));
        }
    }
}

}  // namespace
}  // namespace lumoxa_test
