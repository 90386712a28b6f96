// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

namespace lumoxa_bench {

/// Last part of a benchmark's name: who did the job.
inline constexpr char kOurs[] = "lumoxa";
inline constexpr char kTheirs[] = "lcms";
inline constexpr char kTheirsUnoptimized[] = "lcms_unoptimized";

/// Prints results as they come, and remembers them for a table of ratios at the end.
class RatioReporter : public benchmark::ConsoleReporter {
  public:
    RatioReporter() : ConsoleReporter(OO_Tabular) {}
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

  private:
    std::vector<std::string> jobs_;                                 // in the order measured
    std::map<std::string, std::map<std::string, double>> seconds_;  // job, who: one iteration
};

}  // namespace lumoxa_bench
