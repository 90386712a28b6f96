// SPDX-License-Identifier: Apache-2.0
//
// The kernels of shapers, written once over lanes; each form's source file includes this. No header
// with inline functions may be included here (lanes.h tells why).
#include <cstdint>

#include "base/lanes.h"
#include "convert/shaper_kernels.h"

namespace lumoxa::LUMOXA_LANES {
namespace {

using namespace engine;

Floats column(const float* products, uint8_t first, uint8_t second) {
    return loadFours(products + first * kOutputGroup, products + second * kOutputGroup);
}

void sumColumns(const ColumnSums& sums, const uint8_t* source, int channels, int pixels,
                float* groups) {
    constexpr int kChannel = ColumnSums::kLevels * kOutputGroup;
    const float* const products = sums.products;
    const Floats offsets = loadFours(sums.offsets, sums.offsets);
    for (int i = 0; i < pixels; i += 2) {
        const uint8_t* const a = source + i * channels;
        const uint8_t* const b = i + 1 < pixels ? a + channels : a;
        Floats sum = column(products, a[0], b[0]);
        if (channels == 3) {
            sum = sum + column(products + kChannel, a[1], b[1]);
            sum = sum + column(products + 2 * kChannel, a[2], b[2]);
        }
        store(sum + offsets, groups + i * kOutputGroup);
    }
}

template <int Channels>
void storeBytesOf(const ByteSteps& to, const float* groups, int pixels, uint8_t* destination) {
    const Floats least = load(to.least), one = all(1.0f);
    const Ints restBits = load(to.restBits), restMask = load(to.restMask), toStep = load(to.toStep);
    for (int i = 0; i < pixels; i += 2) {
        const Floats value = smaller(larger(load(groups + i * kOutputGroup), least), one);
        const Ints bits = bitsOf(value);
        const Ints step = gather(to.steps, (bits >> restBits) + toStep);
        const Ints atBegin = (step >> 16) > (bits & restMask);
        const Ints bytes = select(atBegin, step, step >> 8);
        if (i + 1 < pixels) {
            storePixels<Channels>(bytes, i + kOutputGroup < pixels, destination + i * Channels);
        } else {
            storePixel<Channels>(bytes, destination + i * Channels);
        }
    }
}

void storeBytes(const ByteSteps& steps, const float* groups, int channels, int pixels,
                uint8_t* destination) {
    channels == 3 ? storeBytesOf<3>(steps, groups, pixels, destination)
                  : storeBytesOf<1>(steps, groups, pixels, destination);
}

void toUnit(float* row, int pixels) {
    for (int i = 0; i < pixels; i += kLanes)
        store(load(row + i) / all(65535.0f), row + i);
}

void lookUpOctaves(const float* values, float* row, int pixels) {
    constexpr uint32_t kLeastBits = kOctaveFirstStep << kOctaveRestBits;
    constexpr uint32_t kRestMask = (1U << kOctaveRestBits) - 1;
    const Floats least = floatsOf(all(kLeastBits)), one = all(1.0f);
    const Floats perStep = all(1.0f / static_cast<float>(kRestMask + 1));
    for (int i = 0; i < pixels; i += kLanes) {
        const Ints bits = bitsOf(smaller(larger(load(row + i), least), one));
        const Ints step = (bits >> kOctaveRestBits) - all(kOctaveFirstStep);
        const Floats rest = toFloats(bits & all(kRestMask)) * perStep;
        Floats low, high;
        gatherNeighbours(values, step, low, high);
        store(low + (high - low) * rest, row + i);
    }
}

void applyMatrix(const MatrixRows& m, Row* rows, int pixels) {
    for (int i = 0; i < pixels; i += kLanes) {
        const Floats x = load(rows[0] + i), y = load(rows[1] + i), z = load(rows[2] + i);
        for (int r = 0; r < 3; ++r) {
            const float* const f = m.factors[r];
            const Floats sum = all(f[0]) * x + all(f[1]) * y + all(f[2]) * z;
            store(sum + all(m.offsets[r]), rows[r] + i);
        }
    }
}

void storeWords(const Row* rows, int channels, int pixels, uint16_t* destination) {
    constexpr float kTop = 65535.0f;
    for (int c = 0; c < channels; ++c) {
        for (int i = 0; i < pixels; i += kLanes) {
            const Floats rounded = load(rows[c] + i) * all(kTop) + all(0.5f);
            uint16_t words[kLanes];
            storeNarrow(truncated(clipped(rounded, all(kTop))), words);
            const int count = pixels - i < kLanes ? pixels - i : kLanes;
            for (int p = 0; p < count; ++p)
                destination[(i + p) * channels + c] = words[p];
        }
    }
}

}  // namespace

extern const ShaperKernels kShaperKernels = {sumColumns,    storeBytes,  toUnit,
                                             lookUpOctaves, applyMatrix, storeWords};

}  // namespace lumoxa::LUMOXA_LANES
