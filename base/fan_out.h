// SPDX-License-Identifier: Apache-2.0
//
// Fan-out: one run of independent items cut into contiguous slices, one thread a slice.
//
// Threads live for one call: nothing is pooled, so the library holds no thread between calls and
// can be unloaded at any time. Slices are disjoint and joined before the call returns, hence no
// lock exists. This header is ground level: it includes the standard library only.
#pragma once

#include <algorithm>
#include <cstdint>
#include <exception>
#include <thread>
#include <vector>

namespace lumoxa {

/// Threads that the machine runs at once, at least 1.
inline int64_t hardwareThreads() {
    return std::max<int64_t>(std::thread::hardware_concurrency(), 1);
}

/// Fewest pixels worth a thread. Starting and joining one takes some 20 us on an idle core
/// (measured on Linux, x86-64) and a multiple on a busy one; at 3 to 10 ns a pixel, which kernels
/// take, so many pixels take 50 to 160 us.
inline constexpr int64_t kPixelsPerThread = 16384;

/// Threads for so many pixels: `most` at most, at least 1.
inline int64_t threadsForPixels(int64_t pixels, int64_t most) {
    return std::max<int64_t>(std::min(most, pixels / kPixelsPerThread), 1);
}

namespace fan_out_detail {

/// Calls body(slice, first, count) for `slices` slices, the first `onThreads` of them on a thread
/// each. The caller's thread does the rest as one slice: what is left over, or what no thread
/// could be started for.
template <class Thread, class Body>
void runSlices(int64_t items, int64_t slices, int64_t onThreads, const Body& body) {
    const int64_t chunk = items / slices;
    std::vector<Thread> started;
    int64_t slice = 0;
    int64_t given = 0;
    try {
        started.reserve(static_cast<size_t>(onThreads));
        for (; slice < onThreads; ++slice) {
            const int64_t count = slice == slices - 1 ? items - given : chunk;
            started.emplace_back([&body, slice, given, count] { body(slice, given, count); });
            given += count;
        }
    } catch (const std::exception&) {
        // No thread or no memory for one: the slices from `given` on are done below.
    }
    if (given < items) body(slice, given, items - given);
    for (Thread& thread : started)
        thread.join();
}

}  // namespace fan_out_detail

/// Calls body(first, count) for slices that cover 0 .. items - 1, each on a thread of its own.
///
/// Every slice has items / threads items, the last one also the remainder; with fewer items than
/// threads, every item has a thread. `body` must not throw. The caller's thread only starts and
/// joins, unless a thread can't be started: then it works off what has not been given out, so the
/// result is complete and no error escapes.
template <class Thread = std::thread, class Body>
void fanOut(int64_t items, int64_t threads, const Body& body) {
    if (items < 1) return;
    threads = std::min(threads, items);
    fan_out_detail::runSlices<Thread>(
        items, threads, threads,
        [&body](int64_t, int64_t first, int64_t count) { body(first, count); });
}

/// As fanOut, with the last slice on the caller's thread: one thread fewer to start, and none at
/// all for threads = 1. body(slice, first, count) has the slice's number, 0 .. threads - 1, which
/// no other slice of the call has.
template <class Thread = std::thread, class Body>
void fanOutWithCaller(int64_t items, int64_t threads, const Body& body) {
    if (items < 1) return;
    threads = std::min(threads, items);
    fan_out_detail::runSlices<Thread>(items, threads, threads - 1, body);
}

}  // namespace lumoxa
