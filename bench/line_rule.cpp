// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <chrono>
#include <cstdio>

#include "bench/benchmarks.h"
#include "bench/conversions.h"
#include "bench/pictures.h"

namespace lumoxa_bench {
namespace {

constexpr double kLargestRatio = 1.3;
constexpr int kRounds = 9;  // odd, so that the median is one of the times

double secondsOf(const Xform& xform, const icPixelLayout_t& source,
                 const icPixelLayout_t& destination) {
    const auto start = std::chrono::steady_clock::now();
    check(icEvaluate(xform.get(), &source, &destination, nullptr, nullptr), "icEvaluate");
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + kRounds / 2, values.end());
    return values[kRounds / 2];
}

// The two ways take turns, so that whatever else the machine does meets both.
double ratioFor(const Conversion& conversion) {
    const Xform xform = makeXform(conversion);
    icXformDesc_t desc;
    check(icXformGetDesc(xform.get(), &desc), "icXformGetDesc");
    const int inChannels = static_cast<int>(desc.inChannels);
    const int outChannels = static_cast<int>(desc.outChannels);
    std::vector<uint16_t> source = makePicture(Content::Photo, inChannels);
    std::vector<uint16_t> destination(static_cast<size_t>(kPixels) * desc.outChannels);
    std::vector<double> inLines, inOneRun;
    for (int round = 0; round < kRounds; ++round) {
        for (int lines : {kHeight, 1}) {
            (lines == 1 ? inOneRun : inLines)
                .push_back(secondsOf(xform, packedLayout(source.data(), 16, inChannels, lines),
                                     packedLayout(destination.data(), 16, outChannels, lines)));
        }
    }
    const double ratio = median(inLines) / median(inOneRun);
    std::printf("  %-20s %4d lines %7.2f ns/pixel   one line %7.2f ns/pixel   ratio %.2f\n",
                conversion.name.c_str(), kHeight, 1e9 * median(inLines) / kPixels,
                1e9 * median(inOneRun) / kPixels, ratio);
    return ratio;
}

}  // namespace

bool linesCostNoMoreThanOneRun() {
    std::printf(
        "\n%d x %d pixels, 16 bits, in lines and in one line (at most %.1f times as long)\n",
        kWidth, kHeight, kLargestRatio);
    double largest = 0;
    for (const Conversion& conversion : makeConversions()) {
        for (const char* threaded : {"TrcM", "mft2_tetra", "mft2_penta", "sRGB_to_CMYK"}) {
            if (conversion.name == threaded) largest = std::max(largest, ratioFor(conversion));
        }
    }
    return largest <= kLargestRatio;
}

}  // namespace lumoxa_bench
