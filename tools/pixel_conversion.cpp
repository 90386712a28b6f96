// SPDX-License-Identifier: Apache-2.0
//
// A region is converted with one call: 16-bit kernels start threads for each call, which would cost
// more than the pixels of a line. So regions with gaps between lines, or with alpha among the
// colours, are packed into buffers that each of libvips' threads keeps for itself.
#include "tools/pixel_conversion.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <vector>

#include "tools/interrupt.h"
#include "tools/packed_converter.h"
#include "tools/result_text.h"

namespace lumoxa_tool {
namespace {

size_t sampleBytes(bool sixteenBits) {
    return sixteenBits ? 2 : 1;
}

// One side of the conversion of one region.
struct RegionSide {
    uint8_t* first = nullptr;  // top left pixel in libvips' memory
    size_t lineStep = 0;       // bytes between its lines there
    int colours = 0;
    bool alpha = false;
    bool sixteenBits = false;
    std::vector<uint8_t>* scratch = nullptr;

    size_t colourBytes() const { return static_cast<size_t>(colours) * sampleBytes(sixteenBits); }
    size_t pixelBytes() const { return colourBytes() + (alpha ? sampleBytes(sixteenBits) : 0); }
    bool packed(size_t width) const { return !alpha && lineStep == width * pixelBytes(); }
    uint8_t* pixel(size_t x, size_t y) const { return first + y * lineStep + x * pixelBytes(); }
    const uint8_t* alphaOf(size_t x, size_t y) const { return pixel(x, y) + colourBytes(); }

    // Where the kernel reads or writes: libvips' memory itself, or the scratch buffer.
    uint8_t* kernelMemory(size_t width, size_t height) const {
        if (packed(width)) return first;
        scratch->resize(width * height * colourBytes());
        return scratch->data();
    }
};

// Calls copy(pixel in libvips' memory, pixel in the scratch buffer) for all pixels of a region.
template <class Copy>
void forScratchPixels(const RegionSide& side, size_t width, size_t height, const Copy& copy) {
    uint8_t* packed = side.scratch->data();
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x, packed += side.colourBytes()) {
            copy(side.pixel(x, y), packed);
        }
    }
}

// 8-bit and 16-bit alpha have the same ends: 255 is 65535.
void copyAlpha(const RegionSide& source, const RegionSide& target, size_t width, size_t height) {
    for (size_t y = 0; y < height; ++y) {
        for (size_t x = 0; x < width; ++x) {
            const uint8_t* from = source.alphaOf(x, y);
            uint8_t* to = target.pixel(x, y) + target.colourBytes();
            uint16_t value = static_cast<uint16_t>(*from * 257);
            if (source.sixteenBits) std::memcpy(&value, from, sizeof value);
            if (target.sixteenBits) {
                std::memcpy(to, &value, sizeof value);
            } else {
                *to = static_cast<uint8_t>((value + 128u) / 257u);
            }
        }
    }
}

PackedPixels packedPixels(const RegionSide& side, uint8_t* memory) {
    return {memory, side.sixteenBits ? icSamples16 : icSamples8};
}

int convertRegion(PackedConverter& converter, const RegionSide& source, const RegionSide& target,
                  size_t width, size_t height) {
    uint8_t* const from = source.kernelMemory(width, height);
    uint8_t* const to = target.kernelMemory(width, height);
    if (!source.packed(width)) {
        forScratchPixels(source, width, height, [&](const uint8_t* pixel, uint8_t* packed) {
            std::memcpy(packed, pixel, source.colourBytes());
        });
    }
    const int code =
        converter.convert(packedPixels(source, from), packedPixels(target, to), width * height);
    if (code != icSuccess) return code;
    if (!target.packed(width)) {
        forScratchPixels(target, width, height, [&](uint8_t* pixel, const uint8_t* packed) {
            std::memcpy(pixel, packed, target.colourBytes());
        });
    }
    if (target.alpha) copyAlpha(source, target, width, height);
    return icSuccess;
}

// What one of libvips' threads keeps from region to region.
struct Sequence {
    explicit Sequence(const PixelPlan& plan) : converter(*plan.conversion) {}

    PackedConverter converter;
    VipsRegion* region = nullptr;
    std::vector<uint8_t> sourceScratch;
    std::vector<uint8_t> targetScratch;
};

void* startSequence(VipsImage*, void* source, void* plan) {
    auto* sequence = new (std::nothrow) Sequence(*static_cast<const PixelPlan*>(plan));
    if (sequence == nullptr) return nullptr;
    sequence->region = vips_region_new(static_cast<VipsImage*>(source));
    return sequence;
}

int stopSequence(void* memory, void*, void*) {
    auto* sequence = static_cast<Sequence*>(memory);
    g_object_unref(sequence->region);
    delete sequence;
    return 0;
}

RegionSide sideOf(VipsRegion* region, const VipsRect& area, std::vector<uint8_t>& scratch) {
    RegionSide side;
    side.first = VIPS_REGION_ADDR(region, area.left, area.top);
    side.lineStep = VIPS_REGION_LSKIP(region);
    side.scratch = &scratch;
    return side;
}

int generate(VipsRegion* out, void* memory, void*, void* planMemory, gboolean*) {
    auto& sequence = *static_cast<Sequence*>(memory);
    const auto& plan = *static_cast<const PixelPlan*>(planMemory);
    if (interrupted() || vips_region_prepare(sequence.region, &out->valid) != 0) return -1;
    RegionSide source = sideOf(sequence.region, out->valid, sequence.sourceScratch);
    source.colours = plan.sourceColours;
    source.alpha = plan.sourceAlpha;
    source.sixteenBits = plan.sourceSixteenBits;
    RegionSide target = sideOf(out, out->valid, sequence.targetScratch);
    target.colours = plan.targetColours;
    target.alpha = plan.targetAlpha;
    target.sixteenBits = plan.targetSixteenBits;
    try {
        const int code =
            convertRegion(sequence.converter, source, target, static_cast<size_t>(out->valid.width),
                          static_cast<size_t>(out->valid.height));
        if (code == icSuccess) return 0;
        vips_error("lumoxa", "converting pixels %s", faultText(code).c_str());
    } catch (const std::bad_alloc&) {
        vips_error("lumoxa", "not enough memory for a region");
    }
    return -1;
}

}  // namespace

ImageHandle convertPixels(VipsImage* source, const PixelPlan& plan,
                          VipsInterpretation interpretation) {
    ImageHandle target(vips_image_new());
    // Strips of several lines: as many pixels a call as memory that doesn't grow with the image
    // allows.
    if (vips_image_pipelinev(target.get(), VIPS_DEMAND_STYLE_FATSTRIP, source, nullptr) != 0) {
        return nullptr;
    }
    target->Bands = plan.targetColours + (plan.targetAlpha ? 1 : 0);
    target->BandFmt = plan.targetSixteenBits ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR;
    target->Type = interpretation;
    const int code = vips_image_generate(target.get(), startSequence, generate, stopSequence,
                                         source, const_cast<PixelPlan*>(&plan));
    return code == 0 ? std::move(target) : nullptr;
}

}  // namespace lumoxa_tool
