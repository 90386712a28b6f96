// SPDX-License-Identifier: Apache-2.0
//
// The driver: layouts, progress and result codes.
#include "tests/support/seeded_random.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {
namespace {

constexpr int kPixels = 23, kLines = 5;
constexpr uint16_t kUntouched = 0xA5A5;

OwnedXform matrixXform(uint32_t transType) {
    return requested(rgbProfile({curveTag({563})}, "mntr"), 0, transType);
}

icPixelLayout_t strided(icPixelLayout_t layout, int32_t channels) {
    layout.contiguous = 0;
    layout.channelCount = channels;
    return layout;
}

class Driver : public testing::TestWithParam<std::pair<uint32_t, uint32_t>> {};

// Whatever the layouts, callbacks and splits: one line of all pixels is the truth.
TEST_P(Driver, GivesTheSameInEveryLayout) {
    const auto [nIn, nOut] = GetParam();
    OwnedXform x = matrixXform(icDeviceToPcs);
    if (nIn != 3 || nOut != 3) {
        const Samples clut = SeededRandom(nIn).samples(power(3, nIn) * nOut);
        x = requested(lutProfile(gridTag(nIn, nOut, 3, clut), "4CLR", "RGB "), 0, icDeviceToPcs);
    }
    constexpr size_t n = size_t{kPixels} * kLines, pad = 7;
    Samples source = SeededRandom(1).samples(n * nIn), out(n * nOut), expected(n * nOut);
    const Samples truth = converted(x.get(), source);
    const icPixelLayout_t from = packed(source.data(), kPixels, kLines, nIn);
    const icPixelLayout_t to = packed(out.data(), kPixels, kLines, nOut);
    for (const bool heard : {false, true}) {
        const auto run = [&](const icPixelLayout_t& source, const icPixelLayout_t& destination) {
            Listener listener;
            std::fill(out.begin(), out.end(), kUntouched);
            EXPECT_EQ(icEvaluate(x.get(), &source, &destination, heard ? Listener::hear : nullptr,
                                 &listener),
                      0);
            return out;
        };
        EXPECT_EQ(run(from, to), truth);
        EXPECT_EQ(run(strided(from, from.channelCount), strided(to, to.channelCount)), truth);
        for (const int length : {1, 5, kPixels * kLines}) {
            const int lines = kPixels * kLines / length;
            EXPECT_EQ(run(packed(source.data(), length, lines, nIn),
                          packed(out.data(), length, lines, nOut)),
                      truth);
        }
        icPixelLayout_t up = to, down = from;  // both backwards
        up.channelData[0] = out.data() + (kLines - 1) * kPixels * nOut;
        down.channelData[0] = source.data() + (kLines - 1) * kPixels * nIn;
        up.lineStep = -up.lineStep, down.lineStep = -down.lineStep;
        EXPECT_EQ(run(down, up), truth);

        icPixelLayout_t planes = strided(to, to.channelCount);
        planes.pixelStep = 2, planes.lineStep = 2 * kPixels;
        for (uint32_t c = 0; c < nOut; ++c) {
            planes.channelData[c] = out.data() + c * n;
            for (size_t p = 0; p < n; ++p)
                expected[c * n + p] = truth[p * nOut + c];
        }
        EXPECT_EQ(run(from, planes), expected);

        Samples padded((kPixels * nOut + pad) * kLines, kUntouched);
        icPixelLayout_t gaps = packed(padded.data(), kPixels, kLines, nOut);
        gaps.lineStep += 2 * pad;
        run(from, gaps);
        for (size_t i = 0; i < padded.size(); ++i) {
            const size_t line = i / (kPixels * nOut + pad), at = i % (kPixels * nOut + pad);
            ASSERT_EQ(padded[i],
                      at < kPixels * nOut ? truth[line * kPixels * nOut + at] : kUntouched);
        }
    }
}

// Matrix/TRC, then multilinear with as many channels as a layout can have, tetrahedra, pentahedra.
INSTANTIATE_TEST_SUITE_P(Kinds, Driver,
                         testing::Values(std::pair{3, 3}, std::pair{1, 32}, std::pair{3, 4},
                                         std::pair{4, 3}));

// Enough pixels for several threads against lines that are worth none, which a callback keeps
// apart.
TEST(DriverThreads, GiveTheBytesOfOneThread) {
    constexpr int kLength = 500, kMany = 140;
    constexpr size_t n = size_t{kLength} * kMany;
    const Samples clut = SeededRandom(2).samples(power(5, 4) * 3);
    const OwnedXform x =
        requested(lutProfile(gridTag(4, 3, 5, clut), "CMYK", "RGB "), 0, icDeviceToPcs);
    Samples source = SeededRandom(1).samples(n * 4);
    for (const uint32_t in : {icSamples8, icSamples16}) {
        for (const uint32_t out : {icSamples8, icSamples16}) {
            Samples whole(n * 3), apart(n * 3);
            const auto run = [&](Samples& to, int length, int lines, icProgressCallback callback) {
                Listener listener;
                icPixelLayout_t from = packed(source.data(), length, lines, 4);
                icPixelLayout_t into = packed(to.data(), length, lines, 3);
                from.dataType = in, into.dataType = out;
                from.lineStep /= in == icSamples8 ? 2 : 1,
                    into.lineStep /= out == icSamples8 ? 2 : 1;
                EXPECT_EQ(icEvaluate(x.get(), &from, &into, callback, &listener), 0);
            };
            run(whole, kLength * kMany, 1, nullptr);
            run(apart, kLength, kMany, Listener::hear);
            EXPECT_EQ(whole, apart) << in << " " << out;
        }
    }
}

struct Image {
    OwnedXform xform = matrixXform(icDeviceToPcs);
    Samples source = SeededRandom(3).samples(kPixels * kLines * 3);
    Samples out = Samples(kPixels * kLines * 3, kUntouched);
    icPixelLayout_t from = packed(source.data(), kPixels, kLines, 3);
    icPixelLayout_t to = packed(out.data(), kPixels, kLines, 3);

    int evaluate(Listener& listener) {
        return icEvaluate(xform.get(), &from, &to, Listener::hear, &listener);
    }
    ptrdiff_t linesWritten() const {
        return (std::find(out.begin(), out.end(), kUntouched) - out.begin()) / (kPixels * 3);
    }
};

TEST(DriverProgress, ReportsStartLinesAndEnd) {
    const struct {
        int lines, stopAfter;
        Calls calls;
        int written;
    } cases[] = {{3, -1, {{1, 0}, {2, 0}, {2, 33}, {2, 66}, {3, 100}}, 3},
                 {-2, -1, {{1, 0}, {3, 100}}, 0},
                 {5, 1, {{1, 0}, {2, 0}, {2, 20}, {3, 100}}, 2}};
    for (const auto& c : cases) {
        for (const bool contiguous : {true, false}) {
            Image image;
            image.from.contiguous = image.to.contiguous = contiguous;
            image.from.lineCount = c.lines;
            Listener listener{/*atStart=*/9, /*atEnd=*/42, c.stopAfter};
            EXPECT_EQ(image.evaluate(listener), 42);
            EXPECT_EQ(listener.calls, c.calls) << c.lines;
            EXPECT_EQ(image.linesWritten(), c.written) << c.lines;
        }
    }
    Image image;  // no sample type: nothing is converted
    image.to.dataType = 2;
    Listener listener{0, 3};
    EXPECT_EQ(image.evaluate(listener), 3);
    EXPECT_EQ(listener.calls, (Calls{{1, 0}, {3, 100}}));
    EXPECT_EQ(image.out[0], kUntouched);
}

TEST(DriverArguments, AreCheckedBeforeUse) {
    Image image;
    Listener listener;
    const auto code = [&](const OwnedXform& x, const icPixelLayout_t* from,
                          const icPixelLayout_t* to) {
        return icEvaluate(x.get(), from, to, Listener::hear, &listener);
    };
    EXPECT_EQ(code(nullptr, &image.from, &image.to), icErrInvalid);
    EXPECT_EQ(code(image.xform, nullptr, &image.to), icErrInvalid);
    EXPECT_EQ(code(image.xform, &image.from, nullptr), icErrInvalid);
    for (const int channels : {0, 33}) {
        const auto source = strided(image.from, channels),
                   destination = strided(image.to, channels);
        EXPECT_EQ(code(image.xform, &source, &image.to), icErrInvalid) << channels;
        EXPECT_EQ(code(image.xform, &image.from, &destination), icErrInvalid) << channels;
    }
    EXPECT_EQ(code(matrixXform(icGamutTest), &image.from, &image.to), icErrXformKind);
    icPixelLayout_t bytes = image.to;
    bytes.dataType = icSamples8;
    EXPECT_EQ(code(image.xform, &image.from, &bytes), icErrXformKind);
    EXPECT_TRUE(listener.calls.empty());
    EXPECT_EQ(image.out[0], kUntouched);
}

// Neither pixel counts of the destination nor channel counts of either side may lead outside a
// buffer; a destination of other length gets the first pixels of each line.
TEST(DriverArguments, StayInsideBuffersWhenTheyDisagree) {
    const Samples truth = converted(Image().xform.get(), Image().source);
    for (const uint32_t channels : {1U, 2U, 3U, 7U}) {
        for (const int pixels : {1, kPixels - 4, kPixels + 9}) {
            Image image;
            Samples in(size_t{kPixels} * kLines * channels, 500);
            Samples out(static_cast<size_t>(pixels * kLines) * channels, kUntouched);
            const icPixelLayout_t from =
                strided(packed(in.data(), kPixels, kLines, channels), static_cast<int>(channels));
            const icPixelLayout_t to =
                strided(packed(out.data(), pixels, kLines, channels), static_cast<int>(channels));
            EXPECT_EQ(icEvaluate(image.xform.get(), &from, &image.to, nullptr, nullptr), 0);
            EXPECT_EQ(icEvaluate(image.xform.get(), &from, &to, nullptr, nullptr), 0);
            EXPECT_EQ(icEvaluate(image.xform.get(), &image.from, &to, nullptr, nullptr), 0);
            for (size_t i = 0; channels == 3 && i < out.size(); ++i) {
                const size_t line = i / (3 * size_t(pixels)), at = i % (3 * size_t(pixels));
                ASSERT_TRUE(at >= kPixels * 3 || out[i] == truth[line * kPixels * 3 + at]) << i;
            }
        }
    }
}

// From 8-bit gray, an L* of white is not stored and the rest of the line moves up by a sample.
// Callers see this line by line, so lines must never be converted together.
TEST(DriverGray, EightBitWhiteMovesTheRestOfItsLineUpASample) {
    const OwnedXform xform = requested(
        ProfileBytes("scnr", "GRAY", "Lab ").addTag("kTRC", curveTag({})), 0, icDeviceToPcs);
    uint8_t source[4] = {0, 255, 255, 0};
    const uint16_t n = 32768, u = kUntouched;
    const auto run = [&](int pixels, int lines) {
        Samples out(12, kUntouched);
        const icPixelLayout_t from = packed(source, pixels, lines, 1),
                              to = packed(out.data(), pixels, lines, 3);
        EXPECT_EQ(icEvaluate(xform.get(), &from, &to, nullptr, nullptr), 0);
        return out;
    };
    EXPECT_EQ(run(4, 1), (Samples{0, n, n, n, n, n, n, 0, n, n, u, u}));
    EXPECT_EQ(run(2, 2), (Samples{0, n, n, n, n, u, n, n, 0, n, n, u}));
}

}  // namespace
}  // namespace lumoxa_test
