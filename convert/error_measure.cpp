// SPDX-License-Identifier: Apache-2.0
#include "convert/error_measure.h"

#include <algorithm>
#include <cmath>

#include "convert/sample_codec.h"

namespace lumoxa::engine {
namespace {

/// Numerical Recipes' linear congruential generator: its upper bits are random enough to place
/// samples, and the same on every machine.
class Random {
  public:
    explicit Random(uint32_t seed) : state_(seed * 2654435761U + 1U) {}
    uint32_t below(uint32_t bound) {
        state_ = state_ * 1664525U + 1013904223U;
        return static_cast<uint32_t>((uint64_t{state_} * bound) >> 32);
    }

  private:
    uint32_t state_;
};

template <class Next>
std::vector<uint16_t> samplesOf(int inputs, int count, const Next& next) {
    std::vector<uint16_t> samples(static_cast<size_t>(inputs) * static_cast<size_t>(count));
    size_t at = 0;
    for (int i = 0; i < count; ++i) {
        for (int c = 0; c < inputs; ++c)
            samples[at++] = static_cast<uint16_t>(next(c));
    }
    return samples;
}

bool isAdditive(uint32_t space) {
    return space == kSpaceRgb || space == kSpaceGray || isConnectionSpace(space);
}

/// Colours of a profile whose numbers are beyond all sense may be infinite or not a number, whose
/// differences could neither be sorted nor added up.
double bounded(float value) {
    constexpr float kMost = 1e6f;
    return static_cast<double>(std::fabs(value) <= kMost ? value : kMost);
}

ErrorFigures figuresOf(std::vector<double> differences) {
    ErrorFigures figures;
    if (differences.empty()) return figures;
    std::sort(differences.begin(), differences.end());
    for (const double difference : differences)
        figures.mean += difference;
    figures.mean /= static_cast<double>(differences.size());
    figures.percentile = differences[differences.size() * 99 / 100];
    figures.largest = differences.back();
    return figures;
}

}  // namespace

bool MeasuredError::within(const ErrorLimits& limits) const {
    const auto fits = [&](const ErrorFigures& f) {
        return f.mean <= limits.mean && f.percentile <= limits.percentile;
    };
    return fits(whole) && fits(shadows) && fits(between);
}

double MeasuredError::largest() const {
    return std::max({whole.largest, shadows.largest, between.largest});
}

ErrorSet::ErrorSet(const Chain& chain, const Plan& exact, std::vector<uint16_t> samples)
    : chain_(chain),
      samples_(std::move(samples)),
      count_(static_cast<ptrdiff_t>(samples_.size()) / chain.inputs) {
    std::vector<uint16_t> results(static_cast<size_t>(count_ * chain.outputs));
    exact.convert(SampleType::kU16, samples_.data(), SampleType::kU16, results.data(), count_);
    exact_ = seen(results);
}

/// Results as Lab, three numbers a pixel; where nothing leads there, channels in percent.
std::vector<float> ErrorSet::seen(const std::vector<uint16_t>& results) const {
    const bool toLab = !chain_.toLab.empty() || chain_.outSpace == kSpaceLab;
    const int channels = toLab ? 3 : chain_.outputs;
    std::vector<float> colours(static_cast<size_t>(count_ * channels));
    const SampleCodec codec(chain_.outSpace, chain_.outputs, SampleType::kU16);
    Row rows[kMaxChannels];
    for (ptrdiff_t done = 0; done < count_; done += kBlockPixels) {
        const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, count_ - done));
        codec.load(results.data() + done * chain_.outputs, n, rows);
        if (toLab) chain_.toLab.run(rows, n);
        for (int c = 0; c < channels; ++c) {
            for (int i = 0; i < n; ++i)
                colours[static_cast<size_t>((done + i) * channels + c)] =
                    rows[c][i] * (toLab ? 1.0f : 100.0f);
        }
    }
    return colours;
}

ErrorFigures ErrorSet::compare(const std::vector<uint16_t>& results) const {
    const std::vector<float> colours = seen(results);
    const size_t channels = colours.size() / static_cast<size_t>(count_);
    const bool toLab = !chain_.toLab.empty() || chain_.outSpace == kSpaceLab;
    std::vector<double> differences(static_cast<size_t>(count_));
    for (size_t i = 0; i < differences.size(); ++i) {
        double sum = 0, most = 0;
        for (size_t c = 0; c < channels; ++c) {
            const double d = bounded(colours[i * channels + c]) - bounded(exact_[i * channels + c]);
            sum += d * d;
            most = std::max(most, std::fabs(d));
        }
        differences[i] = toLab ? std::sqrt(sum) : most;
    }
    return figuresOf(std::move(differences));
}

ErrorFigures ErrorSet::compare(const Plan& plan) const {
    std::vector<uint16_t> results(static_cast<size_t>(count_ * chain_.outputs));
    plan.convert(SampleType::kU16, samples_.data(), SampleType::kU16, results.data(), count_);
    return compare(results);
}

std::vector<uint16_t> randomSamples(int inputs, int count, uint32_t seed) {
    Random random(seed);
    return samplesOf(inputs, count, [&](int) { return random.below(65536); });
}

std::vector<uint16_t> shadowSamples(uint32_t space, int inputs, int count, uint32_t seed) {
    constexpr uint32_t kDepth = 4096;
    constexpr uint32_t kNeutral = 32768;
    Random random(seed);
    return samplesOf(inputs, count, [&](int c) {
        const uint32_t value = random.below(kDepth + 1);
        if (space == kSpaceLab && c > 0) return kNeutral - kDepth / 2 + value;
        return isAdditive(space) ? value : 65535 - value;
    });
}

std::vector<uint16_t> samplesBetween(int inputs, int points, int count, uint32_t seed) {
    Random random(seed);
    const auto cells = static_cast<uint32_t>(points) - 1;
    return samplesOf(inputs, count,
                     [&](int) { return (2 * random.below(cells) + 1) * 65535 / (2 * cells); });
}

}  // namespace lumoxa::engine
