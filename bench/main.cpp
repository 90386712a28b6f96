// SPDX-License-Identifier: Apache-2.0
//
// All benchmarks, then the table of ratios, then the one speed rule that is enforced. With
// --line-rule-only just the rule. The exit code is 1 when the rule is broken.
#include <cstdio>
#include <cstring>
#include <exception>

#include <benchmark/benchmark.h>

#include "bench/benchmarks.h"
#include "bench/ratio_reporter.h"

namespace {

int run(int argc, char** argv) {
    if (argc == 2 && std::strcmp(argv[1], "--line-rule-only") == 0) {
        return lumoxa_bench::linesCostNoMoreThanOneRun() ? 0 : 1;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    lumoxa_bench::registerBuildBenchmarks();
    lumoxa_bench::registerEvaluateBenchmarks();
    lumoxa_bench::registerEngineBenchmarks();
    lumoxa_bench::RatioReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
    return lumoxa_bench::linesCostNoMoreThanOneRun() ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lumoxa_bench: %s\n", error.what());
        return 2;
    }
}
