// SPDX-License-Identifier: Apache-2.0
#include "tools/interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr int kSignals[] = {
    SIGINT, SIGTERM,
#if defined(SIGHUP)
    SIGHUP,  // the terminal is gone
#endif
#if defined(SIGBREAK)
    SIGBREAK,  // Ctrl-Break, and a console that is closed
#endif
};

std::atomic<int> receivedSignal = 0;
static_assert(std::atomic<int>::is_always_lock_free, "the only kind that a signal handler may use");

extern "C" void noteSignal(int number) {
    receivedSignal = number;
#if defined(_WIN32)
    std::signal(number, noteSignal);  // which forgets a handler that it has called
#endif
}

}  // namespace

void watchForInterrupt() {
#if defined(SIGXFSZ)
    // A file beyond the user's limit fails like one on a full disk, with what that cleans up.
    std::signal(SIGXFSZ, SIG_IGN);
#endif
    for (const int number : kSignals) {
        if (std::signal(number, noteSignal) == SIG_IGN) std::signal(number, SIG_IGN);
    }
}

bool interrupted() {
    return receivedSignal != 0;
}

void throwIfInterrupted() {
    if (interrupted()) throw Interrupted();
}

void dieOfInterrupt() {
#if defined(_WIN32)
    constexpr unsigned kEndedByControlC = 0xC000013A;  // by which command files know it
    std::_Exit(static_cast<int>(kEndedByControlC));
#else
    const int number = receivedSignal;
    std::signal(number, SIG_DFL);
    std::raise(number);
    std::_Exit(kInputAtFault);  // reached only if the signal is blocked
#endif
}

}  // namespace lumoxa_tool
