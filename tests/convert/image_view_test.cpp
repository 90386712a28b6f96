// SPDX-License-Identifier: Apache-2.0
#include "convert/image_view.h"

#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "base/fault.h"

namespace lumoxa_test {
namespace {

using lumoxa::engine::checkViews;
using lumoxa::engine::PixelView;
using lumoxa::engine::SampleType;

constexpr int64_t kFarthest = std::numeric_limits<int64_t>::max();

alignas(16) uint8_t memory[4096];

PixelView packed(int64_t offset, SampleType sample, int64_t width, int64_t height, int channels) {
    const auto bytes = static_cast<int64_t>(bytesOf(sample));
    return {memory + offset,         sample, width, height, channels, bytes, bytes * channels,
            bytes * channels * width};
}

struct Pair {
    PixelView source = packed(0, SampleType::kU8, 10, 8, 3);
    PixelView destination = packed(2048, SampleType::kU16, 10, 8, 4);
};

struct Refusal {
    const char* name;
    int code;
    const char* part;  // of the sentence
    std::function<void(Pair&)> change;

    friend void PrintTo(const Refusal& refusal, std::ostream* out) { *out << refusal.name; }
};

const Refusal kRefusals[] = {
    {"UnknownSamples", icErrInvalid, "source has the unknown sample type 2",
     [](Pair& p) { p.source.sample = static_cast<SampleType>(2); }},
    {"NoChannels", icErrInvalid, "has 0 channels", [](Pair& p) { p.destination.channels = 0; }},
    {"ManyChannels", icErrInvalid, "33 channels", [](Pair& p) { p.source.channels = 33; }},
    {"NegativeWidth", icErrInvalid, "-1 x 8", [](Pair& p) { p.source.width = -1; }},
    {"HugeHeight", icErrInvalid, "2147483649",
     [](Pair& p) { p.source.height = (int64_t{1} << 31) + 1; }},
    {"NullData", icErrNullData, "destination has 10 x 8 pixels, but its data is null",
     [](Pair& p) { p.destination.data = nullptr; }},
    {"OtherSize", icErrInvalid, "the source has 10 x 8 pixels, the destination 10 x 7",
     [](Pair& p) { p.destination.height = 7; }},
    {"TooFewChannels", icErrInvalid, "takes 3 and gives 4", [](Pair& p) { p.source.channels = 2; }},
    {"ExtraOnOneSide", icErrInvalid, "takes 3 and gives 4",
     [](Pair& p) { p.source = packed(0, SampleType::kU8, 10, 8, 4); }},
    {"FarthestRows", icErrInvalid, "exceed all memory",
     [](Pair& p) { p.source.rowStride = kFarthest; }},
    {"MostNegativeRows", icErrInvalid, "exceed all memory",
     [](Pair& p) { p.source.rowStride = std::numeric_limits<int64_t>::min(); }},
    {"SumOfReaches", icErrInvalid, "exceed all memory",
     [](Pair& p) {
         p.source.rowStride = kFarthest / 8;
         p.source.pixelStride = -(kFarthest / 16);
     }},
    {"BelowAllAddresses", icErrInvalid, "exceeds all memory",
     [](Pair& p) { p.source.rowStride = -(int64_t{1} << 59); }},
    {"RowsAgain", icErrInvalid, "source's rows overlap: they are 0 bytes",
     [](Pair& p) { p.source.rowStride = 0; }},
    {"RowsOverlap", icErrInvalid, "source's rows overlap: they are -29 bytes apart and 30",
     [](Pair& p) { p.source.rowStride = -29; }},
    {"PixelsOverlap", icErrInvalid, "destination's pixels overlap: they are 7 bytes apart and 8",
     [](Pair& p) { p.destination.pixelStride = 7; }},
    {"SamplesOverlap", icErrInvalid, "destination's channels overlap: they are 1 bytes apart and 2",
     [](Pair& p) { p.destination.channelStride = 1; }},
    {"PlanesOverlap", icErrInvalid, "source's channels overlap",
     [](Pair& p) {
         p.source.pixelStride = 1;
         p.source.rowStride = 10;
         p.source.channelStride = 79;
     }},
    {"PartlyShared", icErrInvalid, "begins 239 bytes after the source",
     [](Pair& p) { p.destination.data = memory + 239; }},
    {"InPlaceWithLargerPixels", icErrInvalid, "in place",
     [](Pair& p) { p.destination.data = memory; }},
};

class RefusedViews : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedViews, AreNamedWithTheirNumbers) {
    Pair pair;
    EXPECT_EQ(checkViews(3, 4, pair.source, pair.destination).extras, 0);
    GetParam().change(pair);
    try {
        checkViews(3, 4, pair.source, pair.destination);
        FAIL() << "accepted";
    } catch (const lumoxa::FaultError& error) {
        EXPECT_EQ(error.fault().code, GetParam().code);
        EXPECT_NE(error.fault().sentence.find(GetParam().part), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(ImageView, RefusedViews, testing::ValuesIn(kRefusals),
                         [](const auto& refusal) { return std::string(refusal.param.name); });

TEST(ImageView, ReadsNoStrideOfASingleSample) {
    PixelView source = packed(0, SampleType::kU8, 1, 1, 1);
    PixelView destination = packed(100, SampleType::kU16, 1, 1, 1);
    source.channelStride = source.pixelStride = source.rowStride =
        std::numeric_limits<int64_t>::min();
    EXPECT_FALSE(checkViews(1, 1, source, destination).inPlace);
    destination = source;
    destination.rowStride = 3;
    EXPECT_TRUE(checkViews(1, 1, source, destination).inPlace);
}

TEST(ImageView, NeedsNoDataWithoutPixels) {
    for (const int64_t width : {0, 10}) {
        PixelView empty;
        empty.width = width;
        empty.height = 10 - width;
        empty.channels = 5;
        EXPECT_EQ(checkViews(3, 3, empty, empty).extras, 2);
    }
}

bool fit(const PixelView& source, const PixelView& destination) {
    try {
        return !checkViews(source.channels, destination.channels, source, destination).inPlace;
    } catch (const lumoxa::FaultError&) {
        return false;
    }
}

TEST(ImageView, TellsPartsOfOnePictureApart) {
    const auto part = [](int64_t offset, int channels, int64_t channel, int64_t pixel,
                         int64_t row) {
        return PixelView{memory + offset, SampleType::kU8, 10, 8, channels, channel, pixel, row};
    };
    // Left and right half of 20 pixels a row, interleaved, line-interleaved, planar.
    EXPECT_TRUE(fit(part(0, 3, 1, 3, 60), part(30, 3, 1, 3, 60)));
    EXPECT_FALSE(fit(part(0, 3, 1, 3, 60), part(29, 3, 1, 3, 60)));
    EXPECT_TRUE(fit(part(0, 3, 20, 1, 60), part(10, 3, 20, 1, 60)));
    EXPECT_FALSE(fit(part(0, 3, 20, 1, 60), part(9, 3, 20, 1, 60)));
    EXPECT_TRUE(fit(part(10, 3, 160, 1, 20), part(0, 3, 160, 1, 20)));
    EXPECT_FALSE(fit(part(11, 3, 160, 1, 20), part(0, 3, 160, 1, 20)));
    // Upwards into the right half; three channels to the fourth; even rows to odd ones.
    EXPECT_TRUE(fit(part(0, 3, 1, 3, 60), part(450, 3, 1, 3, -60)));
    EXPECT_TRUE(fit(part(0, 3, 1, 4, 40), part(3, 1, 1, 4, 40)));
    EXPECT_FALSE(fit(part(0, 3, 1, 4, 40), part(2, 1, 1, 4, 40)));
    EXPECT_TRUE(fit(part(0, 3, 1, 3, 60), part(30, 1, 1, 1, 60)));
    // One byte too near from either side.
    EXPECT_TRUE(fit(part(0, 3, 1, 3, 30), part(240, 3, 1, 3, 30)));
    EXPECT_FALSE(fit(part(239, 3, 1, 3, 30), part(0, 3, 1, 3, 30)));
}

}  // namespace
}  // namespace lumoxa_test
