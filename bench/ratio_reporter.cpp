// SPDX-License-Identifier: Apache-2.0
#include "bench/ratio_reporter.h"

#include <cstdio>

namespace lumoxa_bench {
namespace {

void printRatio(double ours, const std::map<std::string, double>& seconds, const char* who) {
    const auto theirs = seconds.find(who);
    if (theirs == seconds.end()) {
        std::printf("%12s %7s", "-", "-");
    } else {
        std::printf("%12.3f %7.2f", 1e3 * theirs->second, ours / theirs->second);
    }
}

}  // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        const size_t slash = name.rfind('/');
        if (run.error_occurred || run.run_type != Run::RT_Iteration || run.iterations == 0)
            continue;
        const std::string job = name.substr(0, slash);
        if (seconds_.count(job) == 0) jobs_.push_back(job);
        seconds_[job][name.substr(slash + 1)] =
            run.real_accumulated_time / static_cast<double>(run.iterations);
    }
}

void RatioReporter::Finalize() {
    ConsoleReporter::Finalize();
    std::printf("\nmilliseconds a job, and the ratio ours : theirs (below 1: ours is faster)\n");
    std::printf("%-52s%10s%12s %7s%12s %7s\n", "job", kOurs, kTheirs, "ratio", "unoptimized",
                "ratio");
    for (const std::string& job : jobs_) {
        const auto& seconds = seconds_[job];
        const auto ours = seconds.find(kOurs);
        if (ours == seconds.end()) continue;
        std::printf("%-52s%10.3f", job.c_str(), 1e3 * ours->second);
        printRatio(ours->second, seconds, kTheirs);
        printRatio(ours->second, seconds, kTheirsUnoptimized);
        std::printf("\n");
    }
}

}  // namespace lumoxa_bench
