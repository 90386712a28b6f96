// SPDX-License-Identifier: Apache-2.0
#include "tools/tabulated.h"

#include <algorithm>

#include "tools/chain_link.h"
#include "tools/interrupt.h"
#include "tools/packed_pixels.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kTop = 65535;
constexpr uint32_t kLut8Entries = 256;  // fixed by the format
constexpr uint32_t kLut16Entries = 2;
constexpr size_t kSlicePoints = 65536;  // enough for the kernels' threads, little memory

// The points of a grid in the order of the table, the last input fastest.
class GridPoints {
  public:
    GridPoints(uint32_t inputs, int grid) : grid_(static_cast<uint32_t>(grid)), at_(inputs) {}

    size_t count() const {
        size_t points = 1;
        for (size_t i = 0; i < at_.size(); ++i)
            points *= grid_;
        return points;
    }

    void next(size_t points, std::vector<uint16_t>& samples) {
        samples.clear();
        for (size_t p = 0; p < points; ++p) {
            for (const uint32_t k : at_)
                samples.push_back(
                    static_cast<uint16_t>((k * kTop + (grid_ - 1) / 2) / (grid_ - 1)));
            for (size_t i = at_.size(); i-- > 0 && ++at_[i] == grid_;)
                at_[i] = 0;
        }
    }

  private:
    uint32_t grid_;
    std::vector<uint32_t> at_;
};

void putSample(Bytes& tag, uint32_t value, Precision precision) {
    if (precision == Precision::k16) {
        put16(tag, value);
    } else {
        tag.push_back(static_cast<uint8_t>((value + 128) / 257));
    }
}

void putRamps(Bytes& tag, uint32_t channels, Precision precision) {
    const uint32_t entries = precision == Precision::k8 ? kLut8Entries : kLut16Entries;
    for (uint32_t c = 0; c < channels; ++c) {
        for (uint32_t i = 0; i < entries; ++i)
            putSample(tag, i * kTop / (entries - 1), precision);
    }
}

Bytes lutHeader(const icXformDesc_t& desc, int grid, Precision precision) {
    constexpr uint32_t kOne = 0x10000;
    Bytes tag;
    put32(tag, precision == Precision::k8 ? kLut8 : kLut16);
    put32(tag, 0);
    tag.push_back(static_cast<uint8_t>(desc.inChannels));
    tag.push_back(static_cast<uint8_t>(desc.outChannels));
    tag.push_back(static_cast<uint8_t>(grid));
    tag.push_back(0);
    for (int i = 0; i < 9; ++i)
        put32(tag, i % 4 == 0 ? kOne : 0);  // the identity
    if (precision == Precision::k8) return tag;
    put16(tag, kLut16Entries);
    put16(tag, kLut16Entries);
    return tag;
}

void putSamples(Bytes& tag, icXform_t xform, const icXformDesc_t& desc, int grid,
                Precision precision) {
    GridPoints points(desc.inChannels, grid);
    std::vector<uint16_t> source;
    std::vector<uint16_t> result;
    for (size_t left = points.count(); left > 0;) {
        const size_t count = std::min(left, kSlicePoints);
        points.next(count, source);
        result.resize(count * desc.outChannels);
        const int code = evaluatePacked(xform, desc, {source.data(), icSamples16},
                                        {result.data(), icSamples16}, count);
        if (code != icSuccess) throw InputError("sampling the chain " + faultText(code));
        for (const uint16_t value : result)
            putSample(tag, value, precision);
        left -= count;
        throwIfInterrupted();
    }
}

}  // namespace

XformHandle tabulate(icXform_t xform, const icXformDesc_t& desc, int grid, Precision precision) {
    Bytes tag = lutHeader(desc, grid, precision);
    putRamps(tag, desc.inChannels, precision);
    putSamples(tag, xform, desc, grid, precision);
    putRamps(tag, desc.outChannels, precision);
    return xformOfTag(kLinkClass, desc.inSpace, desc.outSpace,
                      static_cast<icRenderingIntent>(desc.intent), tag);
}

}  // namespace lumoxa_tool
