// SPDX-License-Identifier: Apache-2.0
#include "bench/pictures.h"

#include <algorithm>
#include <cmath>
#include <random>

namespace lumoxa_bench {
namespace {

// The standard distributions differ between libraries; the engine itself does not.
double unitRandom(std::mt19937& engine) {
    return static_cast<double>(engine()) / 4294967296.0;
}

struct Wave {
    double alongX, alongY, phase, amplitude;
};

// One to four periods over the picture, the faster the weaker, as in photographs.
std::vector<Wave> randomWaves(std::mt19937& engine) {
    std::vector<Wave> waves;
    for (double periods : {1.0, 2.0, 3.0, 4.0}) {
        const double direction = 6.2831853 * unitRandom(engine);
        waves.push_back({periods * 6.2831853 * std::cos(direction) / kWidth,
                         periods * 6.2831853 * std::sin(direction) / kWidth,
                         6.2831853 * unitRandom(engine), 0.35 / periods});
    }
    return waves;
}

double photoValue(const std::vector<Wave>& waves, int x, int y, double grain) {
    double value = 0.5 + 0.02 * (grain - 0.5);
    for (const Wave& wave : waves) {
        value += wave.amplitude * std::sin(wave.alongX * x + wave.alongY * y + wave.phase);
    }
    return std::clamp(value, 0.0, 1.0);
}

}  // namespace

std::vector<uint16_t> makePicture(Content content, int channels) {
    std::mt19937 engine(20260u + static_cast<unsigned>(channels));
    std::vector<std::vector<Wave>> waves;
    waves.reserve(static_cast<size_t>(channels));
    for (int c = 0; c < channels; ++c)
        waves.push_back(randomWaves(engine));
    std::vector<uint16_t> samples;
    samples.reserve(static_cast<size_t>(kPixels) * waves.size());
    for (int pixel = 0; pixel < kPixels; ++pixel) {
        for (const auto& channelWaves : waves) {
            const double random = unitRandom(engine);
            const double value =
                content == Content::Noise
                    ? random
                    : photoValue(channelWaves, pixel % kWidth, pixel / kWidth, random);
            samples.push_back(static_cast<uint16_t>(value * 65535.0 + 0.5));
        }
    }
    return samples;
}

std::vector<uint8_t> upperBytes(const std::vector<uint16_t>& samples) {
    std::vector<uint8_t> bytes(samples.size());
    std::transform(samples.begin(), samples.end(), bytes.begin(),
                   [](uint16_t sample) { return static_cast<uint8_t>(sample >> 8); });
    return bytes;
}

icPixelLayout_t packedLayout(void* samples, int bits, int channels, int lines) {
    icPixelLayout_t layout{};
    layout.dataType = bits == 8 ? icSamples8 : icSamples16;
    layout.contiguous = 1;
    layout.pixelCount = kPixels / lines;
    layout.lineCount = lines;
    layout.pixelStep = channels * bits / 8;
    layout.lineStep = layout.pixelCount * layout.pixelStep;
    layout.channelCount = channels;
    layout.channelData[0] = samples;
    return layout;
}

}  // namespace lumoxa_bench
