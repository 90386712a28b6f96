// SPDX-License-Identifier: Apache-2.0
#include "bench/peak_memory.h"

#if defined(__linux__)

#include <algorithm>
#include <fstream>
#include <string>

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

namespace lumoxa_bench {
namespace {

double statusBytes(const std::string& field) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind(field, 0) == 0) return 1024.0 * std::stod(line.substr(field.size()));
    }
    return 0;
}

// Blocks that this process freed earlier are given back first: a job that reused them would seem to
// need less.
double growthHere(const std::function<void()>& job) {
#if defined(__GLIBC__)
    malloc_trim(0);
#endif
    std::ofstream("/proc/self/clear_refs") << "5";  // the high-water mark starts from here
    const double before = statusBytes("VmRSS:");
    job();
    return statusBytes("VmHWM:") - before;
}

std::optional<double> growthInChild(const std::function<void()>& job) {
    int ends[2];
    if (pipe(ends) != 0) return std::nullopt;
    const pid_t child = fork();
    if (child == 0) {
        int status = 1;
        try {
            const double growth = growthHere(job);
            status = write(ends[1], &growth, sizeof growth) == sizeof growth ? 0 : 1;
        } catch (...) {
        }
        _exit(status);
    }
    close(ends[1]);
    double growth = 0;
    const bool complete = child > 0 && read(ends[0], &growth, sizeof growth) == sizeof growth;
    close(ends[0]);
    if (child > 0) waitpid(child, nullptr, 0);
    return complete ? std::optional<double>(growth) : std::nullopt;
}

}  // namespace

std::optional<double> peakMemoryGrowth(const std::function<void()>& job) {
    // What measuring itself takes: pages that a fresh child touches for the first time.
    static const double idle = growthInChild([] {}).value_or(0);
    const auto growth = growthInChild(job);
    return growth ? std::optional<double>(std::max(0.0, *growth - idle)) : std::nullopt;
}

}  // namespace lumoxa_bench

#else

namespace lumoxa_bench {

std::optional<double> peakMemoryGrowth(const std::function<void()>&) {
    return std::nullopt;
}

}  // namespace lumoxa_bench

#endif
