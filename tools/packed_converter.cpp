// SPDX-License-Identifier: Apache-2.0
#include "tools/packed_converter.h"

#include <algorithm>

#include "tools/signatures.h"

namespace lumoxa_tool {
int PackedConverter::convert(const PackedPixels& source, const PackedPixels& target,
                             size_t pixels) {
    const Table& table = conversion_->table;
    if (!table.xform) return convertInSteps(source, target, pixels);
    return evaluatePacked(table.xform.get(), table.desc, source, target, pixels);
}

int PackedConverter::convertInSteps(const PackedPixels& source, const PackedPixels& target,
                                    size_t pixels) {
    const ChainLink& first = conversion_->links.front();
    const ChainLink& second = conversion_->links.back();
    between_.resize(pixels * first.desc.outChannels);
    const PackedPixels between = {between_.data(), icSamples16};
    int code =
        evaluatePacked(first.xform.get(), first.desc, widened(source, pixels), between, pixels);
    if (code != icSuccess) return code;
    conversion_->between.apply(between_.data(), pixels);
    if (target.dataType == icSamples16) {
        return evaluatePacked(second.xform.get(), second.desc, between, target, pixels);
    }
    // Curves and matrix have no kernel from 16 to 8 bits, and that of gray tones wraps black to 0:
    // end in 16 and round.
    result_.resize(pixels * second.desc.outChannels);
    code = evaluatePacked(second.xform.get(), second.desc, between, {result_.data(), icSamples16},
                          pixels);
    if (code != icSuccess) return code;
    const unsigned step = isConnectionSpace(second.desc.outSpace) ? 256 : 257;
    std::transform(result_.begin(), result_.end(), static_cast<uint8_t*>(target.memory),
                   [step](uint16_t value) {
                       return static_cast<uint8_t>(std::min((value + 128u) / step, 255u));
                   });
    return icSuccess;
}

// Gray curves are read at 16 bits: their kernel for 8-bit samples leaves out samples at white.
PackedPixels PackedConverter::widened(const PackedPixels& source, size_t pixels) {
    const icXformDesc_t& desc = conversion_->links.front().desc;
    const bool grayCurve = desc.kind == fourCc("TrcM") && desc.inChannels == 1;
    if (!grayCurve || source.dataType == icSamples16) return source;
    const auto* samples = static_cast<const uint8_t*>(source.memory);
    wide_.resize(pixels);
    std::transform(samples, samples + pixels, wide_.begin(),
                   [](uint8_t value) { return static_cast<uint16_t>(value * 257); });
    return {wide_.data(), icSamples16};
}

}  // namespace lumoxa_tool
