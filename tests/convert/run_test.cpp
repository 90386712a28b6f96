// SPDX-License-Identifier: Apache-2.0
#include "convert/run.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "base/fault.h"
#include "convert/line_kernels.h"
#include "tests/support/pixel_layouts.h"

namespace lumoxa_test {
namespace {

using lumoxa::engine::PixelView;
using lumoxa::engine::Plan;
using lumoxa::engine::runConversion;
using lumoxa::engine::RunOptions;
using lumoxa::engine::RunResult;
using lumoxa::engine::SampleType;
using lumoxa::engine::straightType;

constexpr SampleType kTypes[] = {SampleType::kU8, SampleType::kU16, SampleType::kF32};

double fullScale(SampleType type) {
    return type == SampleType::kU8 ? 255 : type == SampleType::kU16 ? 65535 : 1;
}

/// To the nearest sample of integers, within full scale.
double asSample(double part, SampleType type) {
    if (type == SampleType::kF32) return static_cast<double>(static_cast<float>(part));
    return std::floor(std::clamp(part, 0.0, 1.0) * fullScale(type) + 0.5);
}

double convertedExtra(double sample, SampleType in, SampleType out) {
    return in == out ? sample : asSample(std::isnan(sample) ? 0 : sample / fullScale(in), out);
}

/// Output c is input c + 1, going round, in 16ths of a bit; every other output is inverted.
class TurningPlan : public Plan {
  public:
    using Plan::Plan;

    double answer(const double* colour, int channel, SampleType in, SampleType out) const {
        const double part =
            asSample(colour[(channel + 1) % inputs()] / fullScale(in), SampleType::kU16);
        return asSample((channel % 2 == 0 ? 65535 - part : part) / 65535, out);
    }
    void convert(SampleType in, const void* source, SampleType out, void* destination,
                 ptrdiff_t pixels) const override {
        EXPECT_EQ(reinterpret_cast<uintptr_t>(source) % bytesOf(in), 0u);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(destination) % bytesOf(out), 0u);
        const auto* from = static_cast<const uint8_t*>(source);
        auto* to = static_cast<uint8_t*>(destination);
        for (ptrdiff_t i = 0; i < pixels; ++i) {
            double colour[32];
            for (int c = 0; c < inputs(); ++c, from += bytesOf(in))
                colour[c] = sampleAt(from, in);
            for (int c = 0; c < outputs(); ++c, to += bytesOf(out))
                setSample(to, out, answer(colour, c, in, out));
        }
    }
};

class SamePlan : public Plan {
  public:
    explicit SamePlan(int channels) : Plan(channels, channels) {}
    void convert(SampleType in, const void* source, SampleType out, void* destination,
                 ptrdiff_t pixels) const override {
        EXPECT_EQ(in, out);
        std::memmove(destination, source, static_cast<size_t>(pixels * inputs()) * bytesOf(in));
    }
};

/// Random samples; floating-point ones on 16 bits, so that expected results are exact.
void fill(Picture& picture, uint32_t seed) {
    SeededRandom random(seed);
    const PixelView view = picture.view();
    for (int64_t y = 0; y < view.height; ++y) {
        for (int64_t x = 0; x < view.width; ++x) {
            for (int c = 0; c < view.channels; ++c) {
                setSample(picture.at(x, y, c), view.sample,
                          asSample(random.upTo(65535) / 65535.0, view.sample));
            }
        }
    }
}

/// What a run writes, pixel after pixel, up to row `rows`.
void convertPlainly(const TurningPlan& plan, Picture& source, Picture& destination, int64_t rows) {
    const PixelView in = source.view();
    const PixelView out = destination.view();
    for (int64_t y = 0; y < rows; ++y) {
        for (int64_t x = 0; x < in.width; ++x) {
            double colour[32];
            for (int c = 0; c < in.channels; ++c)
                colour[c] = sampleAt(source.at(x, y, c), in.sample);
            for (int c = 0; c < out.channels; ++c) {
                const int extra = c - plan.outputs();
                setSample(destination.at(x, y, c), out.sample,
                          extra < 0 ? plan.answer(colour, c, in.sample, out.sample)
                                    : convertedExtra(colour[plan.inputs() + extra], in.sample,
                                                     out.sample));
            }
        }
    }
}

RunOptions withThreads(int threads) {
    RunOptions options;
    options.threads = threads;
    return options;
}

void expectPlainResult(const TurningPlan& plan, Picture source, Picture destination, int threads) {
    fill(source, 7);
    Picture expected = destination;
    convertPlainly(plan, source, expected, source.view().height);
    const Picture before = source;
    EXPECT_EQ(runConversion(plan, source.view(), destination.view(), withThreads(threads)),
              RunResult::kDone);
    EXPECT_TRUE(destination.memory() == expected.memory());
    EXPECT_TRUE(source.memory() == before.memory());
}

using LayoutCase = std::tuple<PixelLayout, SampleType, SampleType>;

class RunLayouts : public testing::TestWithParam<LayoutCase> {};

std::string caseName(const testing::TestParamInfo<LayoutCase>& info) {
    const auto [layout, in, out] = info.param;
    return std::string(kPixelLayoutNames[static_cast<int>(layout)]) +
           std::to_string(8 * bytesOf(in)) + "To" + std::to_string(8 * bytesOf(out));
}

constexpr PictureSize kSizes[] = {{37, 23}, {130, 5}, {1, 50}, {50, 1}, {1, 1}, {3, 800}};

TEST_P(RunLayouts, GiveWhatPixelsGiveOneByOne) {
    const auto [layout, in, out] = GetParam();
    for (const PixelLayout other : kPixelLayouts) {
        for (const PictureSize size : kSizes) {
            for (const int extras : {0, 1, 2}) {
                SCOPED_TRACE(std::string(kPixelLayoutNames[static_cast<int>(other)]) + " " +
                             std::to_string(size.width) + " + " + std::to_string(extras));
                expectPlainResult(TurningPlan(3, 4), Picture(layout, in, size, 3 + extras, 1),
                                  Picture(other, out, size, 4 + extras, 2), 1);
            }
        }
    }
}

TEST_P(RunLayouts, TakeAnyNumberOfChannels) {
    const auto [layout, in, out] = GetParam();
    for (const auto& [inputs, outputs] : {std::pair{1, 1}, {1, 3}, {4, 2}, {5, 15}, {31, 1}}) {
        for (const int extras : {0, 1}) {
            expectPlainResult(TurningPlan(inputs, outputs),
                              Picture(layout, in, {41, 3}, inputs + extras, 3),
                              Picture(layout, out, {41, 3}, outputs + extras, 4), 1);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Run, RunLayouts,
                         testing::Combine(testing::ValuesIn(kPixelLayouts),
                                          testing::ValuesIn(kTypes), testing::ValuesIn(kTypes)),
                         caseName);

class RunInPlace : public testing::TestWithParam<PixelLayout> {};

TEST_P(RunInPlace, GivesTheSame) {
    for (const SampleType type : kTypes) {
        for (const PictureSize size : kSizes) {
            for (const int extras : {0, 1, 2}) {
                Picture picture(GetParam(), type, size, 3 + extras, 5);
                fill(picture, 8);
                Picture expected = picture;
                convertPlainly(TurningPlan(3, 3), picture, expected, size.height);
                runConversion(TurningPlan(3, 3), picture.view(), picture.view(), withThreads(1));
                EXPECT_TRUE(picture.memory() == expected.memory());
            }
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Run, RunInPlace, testing::ValuesIn(kPixelLayouts), [](const auto& layout) {
    return std::string(kPixelLayoutNames[static_cast<int>(layout.param)]);
});

class RunThreads : public testing::TestWithParam<int> {};

TEST_P(RunThreads, GiveTheSameBytes) {
    for (const PictureSize size : {PictureSize{331, 257}, {85067, 1}, {1, 85067}}) {
        for (const PixelLayout layout : {PixelLayout::kCropped, PixelLayout::kPlanar}) {
            const int extras = layout == PixelLayout::kPlanar ? 1 : 0;
            expectPlainResult(TurningPlan(3, 3),
                              Picture(layout, SampleType::kU8, size, 3 + extras, 1),
                              Picture(layout, SampleType::kU16, size, 3 + extras, 2), GetParam());
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Run, RunThreads, testing::Values(0, 1, 2, 5),
                         testing::PrintToStringParamName());

TEST(Run, BringsExceptionsOfThreadsToTheCaller) {
    class FailingPlan : public Plan {
      public:
        using Plan::Plan;
        void convert(SampleType, const void*, SampleType, void*, ptrdiff_t) const override {
            throw std::runtime_error("no result");
        }
    };
    Picture picture(PixelLayout::kInterleaved, SampleType::kU8, {300, 300}, 3, 1);
    for (const int threads : {1, 5}) {
        EXPECT_THROW(
            runConversion(FailingPlan(3, 3), picture.view(), picture.view(), withThreads(threads)),
            std::runtime_error);
    }
}

// --- Extra channels -----------------------------------------------------------------------------

TEST(Run, ClipsFloatingPointExtrasToIntegers) {
    const float values[] = {-1, 0,    NAN,      0.25f,     0.5f,
                            1,  1.5f, INFINITY, -INFINITY, 0.49999997f / 255};
    for (const SampleType type : {SampleType::kU8, SampleType::kU16}) {
        Picture source(PixelLayout::kInterleaved, SampleType::kF32, {10, 1}, 2, 1);
        Picture destination(PixelLayout::kPlanar, type, {10, 1}, 2, 2);
        fill(source, 3);
        for (int i = 0; i < 10; ++i)
            setSample(source.at(i, 0, 1), SampleType::kF32, static_cast<double>(values[i]));
        runConversion(TurningPlan(1, 1), source.view(), destination.view(), {});
        for (int i = 0; i < 10; ++i) {
            EXPECT_EQ(sampleAt(destination.at(i, 0, 1), type),
                      convertedExtra(static_cast<double>(values[i]), SampleType::kF32, type));
        }
    }
}

TEST(Run, KeepsEveryBitOfFloatingPointExtras) {
    Picture source(PixelLayout::kOddAddress, SampleType::kF32, {50, 7}, 4, 1);
    Picture destination(PixelLayout::kPlanar, SampleType::kF32, {50, 7}, 4, 2);
    fill(source, 3);
    const uint8_t signallingNan[] = {1, 0, 0xa0, 0x7f};
    std::memcpy(source.at(3, 4, 3), signallingNan, 4);
    runConversion(TurningPlan(3, 3), source.view(), destination.view(), {});
    for (int64_t i = 0; i < 350; ++i)
        EXPECT_EQ(std::memcmp(source.at(i % 50, i / 50, 3), destination.at(i % 50, i / 50, 3), 4),
                  0);
}

// --- Premultiplied ------------------------------------------------------------------------------

RunOptions premultipliedOptions() {
    RunOptions options = withThreads(1);
    options.premultiplied = true;
    return options;
}

/// Rows of alpha from none to full, with colours up to `most` times alpha.
void fillPremultiplied(Picture& picture, double most) {
    const PixelView view = picture.view();
    const double full = fullScale(view.sample);
    for (int64_t y = 0; y < view.height; ++y) {
        const double alpha = asSample(static_cast<double>(y) / (view.height - 1.0), view.sample);
        for (int64_t x = 0; x < view.width; ++x) {
            const double part = most * static_cast<double>(x) / (view.width - 1.0);
            setSample(picture.at(x, y, 0), view.sample, asSample(alpha / full * part, view.sample));
            setSample(picture.at(x, y, 1), view.sample, alpha);
        }
    }
}

TEST(Run, LeavesPremultipliedIntegersToAPlanThatChangesNothing) {
    for (const SampleType type : {SampleType::kU8, SampleType::kU16}) {
        Picture source(PixelLayout::kInterleaved, type, {256, 256}, 2, 1);
        Picture destination(PixelLayout::kInterleaved, type, {256, 256}, 2, 2);
        fillPremultiplied(source, 1);
        runConversion(SamePlan(1), source.view(), destination.view(), premultipliedOptions());
        const std::vector<uint8_t> before(source.memory());
        for (int64_t y = 0; y < 256; ++y) {
            for (int64_t x = 0; x < 256; ++x)
                ASSERT_EQ(sampleAt(destination.at(x, y, 0), type),
                          sampleAt(source.at(x, y, 0), type));
        }
        runConversion(SamePlan(1), source.view(), source.view(), premultipliedOptions());
        EXPECT_TRUE(source.memory() == before);
    }
}

/// The quotient of integers as 16 bits, rounded once.
double divided(double colour, double alpha, SampleType type) {
    if (type == SampleType::kF32) return asSample(colour / alpha, type);
    return std::min(std::floor(colour * 65535 / alpha + 0.5), 65535.0);
}

class RunPremultiplied : public testing::TestWithParam<LayoutCase> {};

TEST_P(RunPremultiplied, ConvertsWhatColoursWouldBeAtFullAlpha) {
    const auto [layout, in, out] = GetParam();
    const TurningPlan plan(1, 1);
    Picture source(layout, in, {256, 256}, 2, 1);
    Picture destination(layout, out, {256, 256}, 2, 2);
    fillPremultiplied(source, 1.25);
    runConversion(plan, source.view(), destination.view(), premultipliedOptions());
    const double step = out == SampleType::kF32 ? 2e-7 : 0.5 + 1e-3;
    for (int64_t y = 0; y < 256; ++y) {
        for (int64_t x = 0; x < 256; ++x) {
            const double colour = sampleAt(source.at(x, y, 0), in);
            const double alpha = sampleAt(source.at(x, y, 1), in);
            const SampleType type = straightType(in);
            const double straight = alpha > 0 ? divided(colour, alpha, type) : 0;
            const double answer =
                plan.answer(&straight, 0, type, straightType(out)) / fullScale(straightType(out));
            const double got = sampleAt(destination.at(x, y, 0), out);
            ASSERT_NEAR(got, answer * alpha / fullScale(in) * fullScale(out), step)
                << x << " " << y;
            ASSERT_EQ(sampleAt(destination.at(x, y, 1), out), convertedExtra(alpha, in, out));
        }
    }
}

TEST_P(RunPremultiplied, EqualsAPlainRunWhereAlphaIsFull) {
    const auto [layout, in, out] = GetParam();
    Picture source(layout, in, {300, 70}, 4, 1);
    Picture plain(layout, out, {300, 70}, 5, 2);
    Picture premultiplied = plain;
    fill(source, 3);
    for (int64_t i = 0; i < 300 * 70; ++i)
        setSample(source.at(i % 300, i / 300, 3), in, fullScale(in));
    runConversion(TurningPlan(3, 4), source.view(), plain.view(), withThreads(1));
    runConversion(TurningPlan(3, 4), source.view(), premultiplied.view(), premultipliedOptions());
    // TurningPlan gives the same for a colour in 8 and 16 bits.
    EXPECT_TRUE(premultiplied.memory() == plain.memory());
}

INSTANTIATE_TEST_SUITE_P(Run, RunPremultiplied,
                         testing::Combine(testing::Values(PixelLayout::kOddAddress,
                                                          PixelLayout::kPlanar),
                                          testing::ValuesIn(kTypes), testing::ValuesIn(kTypes)),
                         caseName);

TEST(Run, GivesNoColourWhereFloatingPointAlphaIsNone) {
    for (const SampleType out : kTypes) {
        Picture source(PixelLayout::kInterleaved, SampleType::kF32, {4, 1}, 2, 1);
        Picture destination(PixelLayout::kInterleaved, out, {4, 1}, 2, 2);
        const double alphas[] = {0, -1, NAN, -0.0};
        for (int i = 0; i < 4; ++i) {
            setSample(source.at(i, 0, 0), SampleType::kF32, 0.5);
            setSample(source.at(i, 0, 1), SampleType::kF32, alphas[i]);
        }
        runConversion(TurningPlan(1, 1), source.view(), destination.view(), premultipliedOptions());
        for (int i = 0; i < 4; ++i)
            EXPECT_EQ(sampleAt(destination.at(i, 0, 0), out), 0) << i;
    }
}

TEST(Run, TakesFloatingPointAlphaAboveFullForFullInIntegers) {
    for (const SampleType out : {SampleType::kU8, SampleType::kU16}) {
        Picture source(PixelLayout::kInterleaved, SampleType::kF32, {1, 1}, 2, 1);
        Picture destination(PixelLayout::kInterleaved, out, {1, 1}, 2, 2);
        setSample(source.at(0, 0, 0), SampleType::kF32, 1.6);
        setSample(source.at(0, 0, 1), SampleType::kF32, 2);
        runConversion(TurningPlan(1, 1), source.view(), destination.view(), premultipliedOptions());
        EXPECT_EQ(sampleAt(destination.at(0, 0, 0), out), asSample(0.2, out));
    }
}

// --- Progress -----------------------------------------------------------------------------------

struct Listener {
    std::vector<double> heard;
    size_t stopAt = SIZE_MAX;

    static bool hear(double done, void* user) {
        auto& self = *static_cast<Listener*>(user);
        self.heard.push_back(done);
        return self.heard.size() <= self.stopAt;
    }
    RunOptions options(int threads) {
        RunOptions result = withThreads(threads);
        result.progress = hear;
        result.user = this;
        return result;
    }
};

TEST(Run, TellsItsProgressFromNoneToAll) {
    Picture picture(PixelLayout::kCropped, SampleType::kU8, {300, 1000}, 1, 1);
    for (const int threads : {1, 2}) {
        Listener listener;
        runConversion(SamePlan(1), picture.view(), picture.view(), listener.options(threads));
        const std::vector<double>& heard = listener.heard;
        EXPECT_EQ(heard.front(), 0);
        EXPECT_EQ(heard.back(), 1);
        EXPECT_GE(heard.size(), 4u);
        EXPECT_TRUE(std::adjacent_find(heard.begin(), heard.end(), std::greater_equal<>()) ==
                    heard.end());
    }
}

TEST(Run, LeavesTheRowsAfterACancelledBatchAlone) {
    const PictureSize size{300, 1000};
    for (size_t calls = 0; calls < 4; ++calls) {
        Picture source(PixelLayout::kInterleaved, SampleType::kU8, size, 3, 1);
        Picture destination(PixelLayout::kInterleaved, SampleType::kU8, size, 3, 2);
        Picture expected = destination;
        Listener listener;
        listener.stopAt = calls;
        EXPECT_EQ(runConversion(TurningPlan(3, 3), source.view(), destination.view(),
                                listener.options(2)),
                  calls < 3 ? RunResult::kCancelled : RunResult::kDone);
        const double rows = listener.heard.back() * size.height;
        EXPECT_NEAR(rows, std::round(rows), 1e-9);
        convertPlainly(TurningPlan(3, 3), source, expected, static_cast<int64_t>(std::round(rows)));
        EXPECT_TRUE(destination.memory() == expected.memory());
    }
}

TEST(Run, DoesNothingWithoutPixels) {
    PixelView empty;
    empty.width = 9;
    empty.channels = 4;
    Listener listener;
    EXPECT_EQ(runConversion(TurningPlan(3, 3), empty, empty, listener.options(0)),
              RunResult::kDone);
    EXPECT_EQ(listener.heard, (std::vector<double>{0, 1}));
}

TEST(Run, RefusesBeforeItCallsOrWrites) {
    Picture picture(PixelLayout::kInterleaved, SampleType::kU8, {9, 9}, 4, 1);
    const std::vector<uint8_t> before = picture.memory();
    Listener listener;
    EXPECT_THROW(
        runConversion(TurningPlan(3, 4), picture.view(), picture.view(), listener.options(1)),
        lumoxa::FaultError);
    EXPECT_THROW(
        runConversion(TurningPlan(4, 4), picture.view(), picture.view(), listener.options(-1)),
        lumoxa::FaultError);
    EXPECT_TRUE(listener.heard.empty());
    EXPECT_TRUE(picture.memory() == before);
}

}  // namespace
}  // namespace lumoxa_test
