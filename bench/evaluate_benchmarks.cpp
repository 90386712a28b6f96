// SPDX-License-Identifier: Apache-2.0
#include <chrono>
#include <functional>
#include <map>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include "bench/benchmarks.h"
#include "bench/conversions.h"
#include "bench/peer.h"
#include "bench/pictures.h"
#include "bench/ratio_reporter.h"
#include "xform/xform_object.h"

namespace lumoxa_bench {
namespace {

constexpr unsigned short kD50[3] = {31595, 32768, 27030};
constexpr int kMostChannels = 16;

// Pictures are made when a benchmark that runs first asks for them.
void* picture(Content content, int bits, int channels) {
    static std::map<std::pair<Content, int>, std::vector<uint16_t>> words;
    static std::map<std::pair<Content, int>, std::vector<uint8_t>> bytes;
    const auto key = std::make_pair(content, channels);
    if (words.count(key) == 0) {
        words[key] = makePicture(content, channels);
        bytes[key] = upperBytes(words[key]);
    }
    return bits == 8 ? static_cast<void*>(bytes[key].data()) : words[key].data();
}

void* resultBuffer() {
    static std::vector<uint16_t> samples(static_cast<size_t>(kPixels) * kMostChannels);
    return samples.data();
}

struct Job {
    std::string name;  // conversion
    Content content;
    int inBits, outBits, inChannels;
};

std::string fullName(const Job& job, const char* who) {
    return "evaluate/" + job.name + (job.content == Content::Photo ? "/photo/" : "/noise/") +
           std::to_string(job.inBits) + "to" + std::to_string(job.outBits) + "/" + who;
}

void add(const Job& job, const char* who, const PeerConvert& convert) {
    const auto run = [job, convert](benchmark::State& state) {
        void* const source = picture(job.content, job.inBits, job.inChannels);
        void* const destination = resultBuffer();
        const auto start = std::chrono::steady_clock::now();
        for (auto _ : state)
            convert(source, destination, kPixels);
        const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
        const double pixels = static_cast<double>(state.iterations()) * kPixels;
        state.counters["ns/pixel"] = 1e9 * elapsed.count() / pixels;
        state.counters["MP/s"] = 1e-6 * pixels / elapsed.count();
    };
    benchmark::RegisterBenchmark(fullName(job, who).c_str(), run)
        ->Unit(benchmark::kMillisecond)
        ->UseRealTime()
        ->MinTime(0.1);
}

bool hasKernel(icXform_t xform, int inBits, int outBits) {
    uint16_t sample[kMostChannels] = {}, result[kMostChannels] = {};
    icPixelLayout_t source = packedLayout(sample, inBits, 1, 1);
    icPixelLayout_t destination = packedLayout(result, outBits, 1, 1);
    source.pixelCount = destination.pixelCount = 1;
    return icEvaluate(xform, &source, &destination, nullptr, nullptr) == 0;
}

// The picture goes in lines, as an application would hand it over.
PeerConvert oursFor(const std::shared_ptr<const icXformInternal>& xform, const Job& job,
                    int outChannels) {
    return [xform, job, outChannels](const void* source, void* destination, uint32_t) {
        const icPixelLayout_t from =
            packedLayout(const_cast<void*>(source), job.inBits, job.inChannels, kHeight);
        const icPixelLayout_t to = packedLayout(destination, job.outBits, outChannels, kHeight);
        check(icEvaluate(xform.get(), &from, &to, nullptr, nullptr), "icEvaluate");
    };
}

void addConversion(const Conversion& conversion) {
    const std::shared_ptr<const icXformInternal> xform = makeXform(conversion);
    icXformDesc_t desc;
    check(icXformGetDesc(xform.get(), &desc), "icXformGetDesc");
    for (const auto& depths : {std::pair(8, 8), {8, 16}, {16, 16}, {16, 8}}) {
        const int inBits = depths.first, outBits = depths.second;
        if (!hasKernel(xform.get(), inBits, outBits)) continue;
        for (Content content : {Content::Photo, Content::Noise}) {
            const Job job{conversion.name, content, inBits, outBits,
                          static_cast<int>(desc.inChannels)};
            add(job, kOurs, oursFor(xform, job, static_cast<int>(desc.outChannels)));
            const auto addPeer = [&](const char* who, PeerMode mode) {
                if (const auto convert = makePeer(conversion, inBits, outBits, mode)) {
                    add(job, who, convert);
                }
            };
            addPeer(kTheirs, PeerMode::Default);
            // Elsewhere the unoptimised stages would only be measured again.
            if (inBits == 16 && outBits == 16 && content == Content::Photo) {
                addPeer(kTheirsUnoptimized, PeerMode::Unoptimized);
            }
        }
    }
}

using Kernel = void (*)(const void*, const unsigned short*, unsigned short*, int);

// No profile asks for these alone; they are the stages between connection spaces.
void addConnectionSpaceKernel(const std::string& name, icXformInternal* made, Kernel kernel,
                              const PeerConvert& peer) {
    const std::shared_ptr<const icXformInternal> xform{Xform(made)};
    if (xform == nullptr) throw std::bad_alloc();
    for (Content content : {Content::Photo, Content::Noise}) {
        const Job job{name, content, 16, 16, 3};
        add(job, kOurs, [xform, kernel](const void* source, void* destination, uint32_t pixels) {
            kernel(xform->state.get(), static_cast<const unsigned short*>(source),
                   static_cast<unsigned short*>(destination), static_cast<int>(pixels));
        });
        if (peer) add(job, kTheirs, peer);
    }
}

}  // namespace

void registerEvaluateBenchmarks() {
    for (const Conversion& conversion : makeConversions())
        addConversion(conversion);
    addConnectionSpaceKernel("LtoX", icGetLabToXyzXform(kD50, kD50, false), icConvertLabToXyz,
                             makePeerLabToXyz());
    addConnectionSpaceKernel("XtoL", icGetXyzToLabXform(kD50, kD50), icConvertXYZToLab,
                             makePeerXyzToLab());
}

}  // namespace lumoxa_bench
