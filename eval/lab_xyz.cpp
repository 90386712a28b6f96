// SPDX-License-Identifier: Apache-2.0
#include "eval/lab_xyz.h"

#include <algorithm>
#include <array>

#include "base/pcs_encoding.h"
#include "base/power.h"
#include "eval/kernel.h"

namespace lumoxa {
namespace {

constexpr int kTableSize = 65536;

// f(t) is held on the scale 1.0 = 65280, the scale of L*. The rest follows from CIE 15.
constexpr int kFOne = 65280;
constexpr float kFScale = 65280.0f;
constexpr int kLinearBelowF = 13506;  // f of 0.008856: 6/29 on this scale
constexpr float kLPerF = 1.16f;
constexpr float kLOffset = 10444.8f;           // 16 L* units of 652.8
constexpr float kLOffsetFullScale = 10485.6f;  // 16 L* units of 655.35
constexpr float kFPerL = 0.862069f;            // 1 / 1.16
constexpr float kFPerLFullScale = 0.8587146f;  // 65280 / (1.16 x 65535)
constexpr float kAPerF = 1.9607843f;           // 500 x 256 / 65280
constexpr float kBPerF = 0.7843137f;           // 200 x 256 / 65280

uint16_t fOfSample(int sample, float reciprocalWhite) {
    const float t = static_cast<float>(sample) * reciprocalWhite;
    if (static_cast<double>(t) < kCieLinearBelow) {
        return static_cast<uint16_t>(
            truncated((t * kCieLinearSlope + kCieLinearOffset) * kFScale + 0.5f));
    }
    if (t <= 1.0f) {
        return static_cast<uint16_t>(
            truncated(power(static_cast<double>(t), 1.0 / 3.0) * 65280.0 + 0.5));
    }
    return kFOne;  // brighter than the white counts as the white
}

/// What the three channels' tables hold at one place.
using TableRow = std::array<uint16_t, 3>;

/// The power is the same for all channels, and nearly all that an entry costs.
TableRow samplesOfF(int f, const uint16_t* white) {
    TableRow row;
    if (f < kLinearBelowF) {
        const float t =
            std::max(0.0f, (static_cast<float>(f) / kFScale - kCieLinearOffset) / kCieLinearSlope);
        std::transform(white, white + 3, row.begin(), [t](uint16_t w) {
            return static_cast<uint16_t>(truncated(t * static_cast<float>(w) + 0.5f));
        });
    } else if (f <= kFOne) {
        const double t = power(f / 65280.0, 3.0);
        std::transform(white, white + 3, row.begin(),
                       [t](uint16_t w) { return static_cast<uint16_t>(truncated(t * w + 0.5)); });
    } else {
        std::copy_n(white, 3, row.begin());
    }
    return row;
}

/// One block of three tables, whose entries i are row(i), and the pointers into it.
template <class Row>
std::unique_ptr<uint16_t[]> makeTables(uint16_t* (&tables)[3], Row row) {
    auto block = std::make_unique<uint16_t[]>(size_t{3} * kTableSize);
    for (int c = 0; c < 3; ++c)
        tables[c] = block.get() + static_cast<ptrdiff_t>(c) * kTableSize;
    for (int i = 0; i < kTableSize; ++i) {
        const TableRow entries = row(i);
        for (size_t c = 0; c < 3; ++c)
            tables[c][i] = entries[c];
    }
    return block;
}

uint16_t clippedSample(int v) {
    return static_cast<uint16_t>(std::clamp(v, 0, 65535));
}

void xyzToLab(const XyzToLab_t& s, const uint16_t* source, uint16_t* destination, ptrdiff_t pixels,
              CurveMask) {
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const int fx = s.fTable[0][source[0]];
        const int fy = s.fTable[1][source[1]];
        const int fz = s.fTable[2][source[2]];
        const int a = truncated(static_cast<float>(fx - fy) * kAPerF + 0.5f);
        const int b = truncated(static_cast<float>(fy - fz) * kBPerF + 0.5f);
        destination[0] =
            clippedSample(truncated(static_cast<float>(fy) * kLPerF - kLOffset + 0.5f));
        destination[1] = clippedSample(a + kLabNeutral);
        destination[2] = clippedSample(b + kLabNeutral);
    }
}

void labToXyz(const LabToXyz_t& s, const uint16_t* source, uint16_t* destination, ptrdiff_t pixels,
              CurveMask) {
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const auto a = static_cast<float>(source[1] - kLabNeutral);
        const auto b = static_cast<float>(source[2] - kLabNeutral);
        const int fy =
            clippedSample(truncated((static_cast<float>(source[0]) + s.lOffset) * s.lScale + 0.5f));
        const int fx = clippedSample(truncated(a / kAPerF + 0.5f) + fy);
        const int fz = clippedSample(fy - truncated(b / kBPerF + 0.5f));
        destination[0] = s.xyzTable[0][fx];
        destination[1] = s.xyzTable[1][fy];
        destination[2] = s.xyzTable[2][fz];
    }
}

}  // namespace

std::unique_ptr<XyzToLabState> makeXyzToLab(const uint16_t* white) {
    auto state = std::make_unique<XyzToLabState>();
    std::copy_n(white, 3, state->white);
    const float reciprocal[3] = {1.0f / static_cast<float>(white[0]),
                                 1.0f / static_cast<float>(white[1]),
                                 1.0f / static_cast<float>(white[2])};
    state->tables = makeTables(state->fTable, [&reciprocal](int i) {
        return TableRow{fOfSample(i, reciprocal[0]), fOfSample(i, reciprocal[1]),
                        fOfSample(i, reciprocal[2])};
    });
    return state;
}

std::unique_ptr<LabToXyzState> makeLabToXyz(const uint16_t* white, bool fullScaleL) {
    auto state = std::make_unique<LabToXyzState>();
    std::copy_n(white, 3, state->white);
    state->lOffset = fullScaleL ? kLOffsetFullScale : kLOffset;
    state->lScale = fullScaleL ? kFPerLFullScale : kFPerL;
    state->tables = makeTables(state->xyzTable, [white](int i) { return samplesOfF(i, white); });
    return state;
}

}  // namespace lumoxa

using namespace lumoxa;

void icConvertXYZToLab(const void* state, const unsigned short* source, unsigned short* destination,
                       int pixels) {
    kernelOnAllCores<XyzToLab_t, xyzToLab>(state, source, destination, pixels, {});
}

void icConvertLabToXyz(const void* state, const unsigned short* source, unsigned short* destination,
                       int pixels) {
    kernelOnAllCores<LabToXyz_t, labToXyz>(state, source, destination, pixels, {});
}
