// SPDX-License-Identifier: Apache-2.0
#include <map>
#include <string>
#include <tuple>

#include <benchmark/benchmark.h>

#include "bench/benchmarks.h"
#include "bench/conversions.h"
#include "bench/peer.h"
#include "bench/pictures.h"
#include "bench/ratio_reporter.h"
#include "lumoxa/lumoxa.hpp"

namespace lumoxa_bench {
namespace {

using lumoxa::ImageView;

/// Two profiles, as images in memory.
struct Pair {
    std::string name;
    std::shared_ptr<const Bytes> from, to;
};

std::vector<Pair> makePairs() {
    const auto image = [](const char* pathEnd) {
        return std::make_shared<const Bytes>(realProfile(pathEnd));
    };
    const auto srgb = image("ghostscript/srgb.icc"), parametric = image("colord/sRGB.icc");
    const auto adobe = image("colord/AdobeRGB1998.icc");
    const auto press = image("ghostscript/default_cmyk.icc");
    const auto plain = image("ghostscript/ps_cmyk.icc");
    return {{"sRGB_to_AdobeRGB", srgb, adobe}, {"AdobeRGB_to_parametric_sRGB", adobe, parametric},
            {"sRGB_to_CMYK", srgb, press},     {"AdobeRGB_to_CMYK", adobe, press},
            {"CMYK_to_sRGB", press, srgb},     {"CMYK_to_CMYK", plain, press}};
}

lumoxa::Conversion makeEngine(const Pair& pair) {
    const auto open = [](const Bytes& image) {
        return lumoxa::Profile::fromBytes(image.data(), image.size());
    };
    return {open(*pair.from), open(*pair.to)};
}

void addReady(const Pair& pair, int bits) {
    const std::string job = "ready/" + pair.name + "/" + std::to_string(bits) + "/";
    const auto add = [&](const char* who, const auto& make) {
        benchmark::RegisterBenchmark((job + who).c_str(),
                                     [make](benchmark::State& state) {
                                         for (auto _ : state)
                                             make();
                                     })
            ->Unit(benchmark::kMillisecond)
            ->MeasureProcessCPUTime()  // tables are built on all cores
            ->UseRealTime()
            ->MinTime(0.1);
    };
    add(kOurs, [pair] { makeEngine(pair); });
    if (makeCompensatingPeer(*pair.from, *pair.to, bits))
        add(kTheirs, [pair, bits] { makeCompensatingPeer(*pair.from, *pair.to, bits); });
}

/// The picture in the sample type of so many bits.
struct Samples {
    std::vector<uint8_t> bytes;
    std::vector<uint16_t> words;
    std::vector<float> floats;

    Samples(Content content, int channels, int bits) : words(makePicture(content, channels)) {
        if (bits == 8) bytes = upperBytes(words);
        if (bits == 32) {
            for (const uint16_t word : words)
                floats.push_back(static_cast<float>(word) / 65535.0F);
        }
    }
    void* data(int bits) {
        return bits == 8    ? static_cast<void*>(bytes.data())
               : bits == 16 ? static_cast<void*>(words.data())
                            : floats.data();
    }
};

/// Pictures are made when a benchmark that runs first asks for them.
void* picture(Content content, int channels, int bits) {
    static std::map<std::tuple<Content, int, int>, Samples> pictures;
    const auto key = std::make_tuple(content, channels, bits);
    return pictures.try_emplace(key, content, channels, bits).first->second.data(bits);
}

ImageView viewOf(void* data, int bits, int channels) {
    if (bits == 8) return ImageView::packed(static_cast<uint8_t*>(data), kWidth, kHeight, channels);
    if (bits == 16)
        return ImageView::packed(static_cast<uint16_t*>(data), kWidth, kHeight, channels);
    return ImageView::packed(static_cast<float*>(data), kWidth, kHeight, channels);
}

void addRun(const Pair& pair, Content content, int bits) {
    const lumoxa::Conversion conversion = makeEngine(pair);
    const int inputs = conversion.inputChannels(), outputs = conversion.outputChannels();
    const std::string job =
        "run/" + pair.name + (content == Content::Photo ? "/photo/" : "/noise/") +
        (bits == 32 ? "float" : std::to_string(bits) + "to" + std::to_string(bits)) + "/";
    const auto add = [&](const char* who, const PeerConvert& convert) {
        const auto run = [=](benchmark::State& state) {
            void* const source = picture(content, inputs, bits);
            std::vector<float> result(static_cast<size_t>(kPixels) * static_cast<size_t>(outputs));
            for (auto _ : state)
                convert(source, result.data(), kPixels);
            state.counters["ns/pixel"] =
                benchmark::Counter(1e-9 * kPixels, benchmark::Counter::kIsIterationInvariantRate |
                                                       benchmark::Counter::kInvert);
        };
        benchmark::RegisterBenchmark((job + who).c_str(), run)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime()
            ->MinTime(0.1);
    };
    add(kOurs, [=](const void* source, void* result, uint32_t) {
        lumoxa::Conversion::Run alone;
        alone.threads = 1;
        conversion.run(viewOf(const_cast<void*>(source), bits, inputs),
                       viewOf(result, bits, outputs), alone);
    });
    if (const PeerConvert peer = makeCompensatingPeer(*pair.from, *pair.to, bits))
        add(kTheirs, peer);
}

}  // namespace

void registerEngineBenchmarks() {
    for (const Pair& pair : makePairs()) {
        for (const int bits : {8, 16})
            addReady(pair, bits);
        for (const Content content : {Content::Photo, Content::Noise}) {
            for (const int bits : {8, 16})
                addRun(pair, content, bits);
        }
        addRun(pair, Content::Photo, 32);
    }
}

}  // namespace lumoxa_bench
