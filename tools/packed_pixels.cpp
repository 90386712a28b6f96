// SPDX-License-Identifier: Apache-2.0
#include "tools/packed_pixels.h"

namespace lumoxa_tool {
namespace {

icPixelLayout_t layoutOf(const PackedPixels& packed, size_t pixels, uint32_t channels) {
    const size_t sampleBytes = packed.dataType == icSamples16 ? 2 : 1;
    icPixelLayout_t layout = {};
    layout.dataType = packed.dataType;
    layout.contiguous = 1;
    layout.pixelCount = static_cast<int32_t>(pixels);
    layout.lineCount = 1;
    layout.pixelStep = static_cast<int32_t>(channels * sampleBytes);
    layout.lineStep = static_cast<int32_t>(pixels * channels * sampleBytes);
    layout.channelCount = static_cast<int32_t>(channels);
    layout.channelData[0] = packed.memory;
    return layout;
}

}  // namespace

int evaluatePacked(icXform_t xform, const icXformDesc_t& desc, const PackedPixels& source,
                   const PackedPixels& target, size_t pixels) {
    const icPixelLayout_t from = layoutOf(source, pixels, desc.inChannels);
    const icPixelLayout_t to = layoutOf(target, pixels, desc.outChannels);
    return icEvaluate(xform, &from, &to, nullptr, nullptr);
}

}  // namespace lumoxa_tool
