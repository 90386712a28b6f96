// SPDX-License-Identifier: Apache-2.0
#include "tools/packed_converter.h"

#include <algorithm>

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

int evaluate(const XformHandle& xform, const icXformDesc_t& desc, const PackedPixels& source,
             const PackedPixels& target, size_t pixels) {
    const icPixelLayout_t from = layoutOf(source, pixels, desc.inChannels);
    const icPixelLayout_t to = layoutOf(target, pixels, desc.outChannels);
    return icEvaluate(xform.get(), &from, &to, nullptr, nullptr);
}

}  // namespace

int PackedConverter::convert(const PackedPixels& source, const PackedPixels& target,
                             size_t pixels) {
    if (!conversion_->combined) return convertInSteps(source, target, pixels);
    return evaluate(conversion_->combined, conversion_->desc, source, target, pixels);
}

int PackedConverter::convertInSteps(const PackedPixels& source, const PackedPixels& target,
                                    size_t pixels) {
    const ChainLink& first = conversion_->from;
    const ChainLink& second = conversion_->to;
    const size_t samples = pixels * second.desc.outChannels;
    between_.resize(std::max(pixels * first.desc.outChannels, samples));
    const PackedPixels between = {between_.data(), icSamples16};
    int code = evaluate(first.xform, first.desc, source, between, pixels);
    if (code != icSuccess) return code;
    if (target.dataType == icSamples16) {
        return evaluate(second.xform, second.desc, between, target, pixels);
    }
    // Matrix transforms have no kernel from 16 to 8 bits: end in 16 and round.
    code = evaluate(second.xform, second.desc, between, between, pixels);
    if (code != icSuccess) return code;
    std::transform(between_.data(), between_.data() + samples, static_cast<uint8_t*>(target.memory),
                   [](uint16_t value) { return static_cast<uint8_t>((value + 128u) / 257u); });
    return icSuccess;
}

}  // namespace lumoxa_tool
