// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <string>

#include <benchmark/benchmark.h>

#include "bench/benchmarks.h"
#include "bench/conversions.h"
#include "bench/peak_memory.h"
#include "bench/peer.h"
#include "bench/ratio_reporter.h"

namespace lumoxa_bench {
namespace {

void add(const std::string& job, const char* who, const std::function<void()>& work) {
    const auto peak = peakMemoryGrowth(work);
    benchmark::RegisterBenchmark((job + "/" + who).c_str(),
                                 [work, peak](benchmark::State& state) {
                                     for (auto _ : state)
                                         work();
                                     if (peak) state.counters["peak_MB"] = *peak / 1e6;
                                 })
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->MinTime(0.1);
}

void addLoading(const std::string& pathEnd) {
    const auto image = std::make_shared<const Bytes>(realProfile(pathEnd));
    const std::string job = "load/" + pathEnd;
    add(job, kOurs, [image] { loadProfile(*image); });
    if (peerLoads(*image)) add(job, kTheirs, [image] { peerLoads(*image); });
}

}  // namespace

void registerBuildBenchmarks() {
    for (const char* profile :
         {"ghostscript/srgb.icc", "ghostscript/default_cmyk.icc", "icc/ITULab.icc"}) {
        addLoading(profile);
    }
    for (const Conversion& conversion : makeConversions()) {
        const std::string job =
            (conversion.links.size() > 1 ? "combine/" : "get/") + conversion.name;
        add(job, kOurs, [conversion] { makeXform(conversion); });
        if (makePeer(conversion, 16, 16, PeerMode::Default)) {
            add(job, kTheirs, [conversion] { makePeer(conversion, 16, 16, PeerMode::Default); });
        }
    }
}

}  // namespace lumoxa_bench
