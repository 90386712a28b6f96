// SPDX-License-Identifier: Apache-2.0
#include "eval/fan_out.h"

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

using Slices = std::map<int64_t, int64_t>;  // first item to count

Slices slicesOf(int64_t items, int64_t threads, int available = 99) {
    ScarceThread::left = available;
    Slices slices;
    lumoxa::fanOut<ScarceThread>(
        items, threads, [&](int64_t first, int64_t count) { slices.emplace(first, count); });
    return slices;
}

TEST(FanOut, CutsOtherSlicesThanPromised) {
    EXPECT_EQ(slicesOf(-3, 4), Slices{});
    EXPECT_EQ(slicesOf(0, 4), Slices{});
    EXPECT_EQ(slicesOf(1, 4), (Slices{{0, 1}}));
    EXPECT_EQ(slicesOf(3, 4), (Slices{{0, 1}, {1, 1}, {2, 1}}));
    EXPECT_EQ(slicesOf(11, 4), (Slices{{0, 2}, {2, 2}, {4, 2}, {6, 5}}));
    EXPECT_EQ(slicesOf(7, 1), (Slices{{0, 7}}));
}

TEST(FanOut, LosesItemsWhenThreadsRunOut) {
    for (int available = 0; available <= 4; ++available) {
        int64_t next = 0;
        for (const auto& [first, count] : slicesOf(23, 4, available)) {
            EXPECT_EQ(first, next);
            next += count;
        }
        EXPECT_EQ(next, 23) << available;
    }
}

}  // namespace
}  // namespace lumoxa_test
