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
    const int64_t chunk = items / threads;
    std::vector<Thread> started;
    int64_t given = 0;
    try {
        started.reserve(static_cast<size_t>(threads));
        for (int64_t i = 0; i < threads; ++i) {
            const int64_t count = i == threads - 1 ? items - given : chunk;
            started.emplace_back([&body, given, count] { body(given, count); });
            given += count;
        }
    } catch (const std::exception&) {
        // No thread or no memory for one: the slices from `given` on are done below.
    }
    if (given < items) body(given, items - given);
    for (Thread& thread : started)
        thread.join();
}

}  // namespace lumoxa
