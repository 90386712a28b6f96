// SPDX-License-Identifier: Apache-2.0
#include "eval/fan_out.h"

#include <map>
#include <mutex>
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

template <class Thread>
Slices slicesOf(int64_t items, int64_t threads) {
    std::mutex mutex;
    Slices slices;
    lumoxa::fanOut<Thread>(items, threads, [&](int64_t first, int64_t count) {
        const std::lock_guard<std::mutex> lock(mutex);
        slices.emplace(first, count);
    });
    return slices;
}

TEST(FanOut, CutsOtherSlicesThanPromised) {
    EXPECT_EQ(slicesOf<std::thread>(-3, 4), Slices{});
    EXPECT_EQ(slicesOf<std::thread>(0, 4), Slices{});
    EXPECT_EQ(slicesOf<std::thread>(1, 4), (Slices{{0, 1}}));
    EXPECT_EQ(slicesOf<std::thread>(3, 4), (Slices{{0, 1}, {1, 1}, {2, 1}}));
    EXPECT_EQ(slicesOf<std::thread>(4, 4), (Slices{{0, 1}, {1, 1}, {2, 1}, {3, 1}}));
    EXPECT_EQ(slicesOf<std::thread>(11, 4), (Slices{{0, 2}, {2, 2}, {4, 2}, {6, 5}}));
    EXPECT_EQ(slicesOf<std::thread>(7, 1), (Slices{{0, 7}}));
}

TEST(FanOut, LosesItemsWhenThreadsRunOut) {
    for (int available = 0; available <= 4; ++available) {
        ScarceThread::left = available;
        int64_t next = 0;
        for (const auto& [first, count] : slicesOf<ScarceThread>(23, 4)) {
            EXPECT_EQ(first, next);
            next += count;
        }
        EXPECT_EQ(next, 23) << available;
    }
}

}  // namespace
}  // namespace lumoxa_test
