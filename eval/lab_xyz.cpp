// SPDX-License-Identifier: Apache-2.0
#include "eval/lab_xyz.h"

#include <algorithm>

#include "eval/kernel.h"
#include "profile/pcs_encoding.h"
#include "profile/power.h"

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

uint16_t sampleOfF(int f, uint16_t white) {
    if (f < kLinearBelowF) {
        const float t =
            std::max(0.0f, (static_cast<float>(f) / kFScale - kCieLinearOffset) / kCieLinearSlope);
        return static_cast<uint16_t>(truncated(t * static_cast<float>(white) + 0.5f));
    }
    if (f <= kFOne) {
        const double t = power(f / 65280.0, 3.0);
        return static_cast<uint16_t>(truncated(t * white + 0.5));
    }
    return white;
}

/// One block of three tables, entry i of channel c being entry(i, c), and the pointers into it.
template <class Entry>
std::unique_ptr<uint16_t[]> makeTables(uint16_t* (&tables)[3], Entry entry) {
    auto block = std::make_unique<uint16_t[]>(size_t{3} * kTableSize);
    for (int c = 0; c < 3; ++c) {
        tables[c] = block.get() + static_cast<ptrdiff_t>(c) * kTableSize;
        for (int i = 0; i < kTableSize; ++i)
            tables[c][i] = entry(i, c);
    }
    return block;
}

uint16_t clippedSample(int v) {
    return static_cast<uint16_t>(std::clamp(v, 0, 65535));
}

void xyzToLab(const XyzToLab_t& s, const uint16_t* source, uint16_t* destination,
              ptrdiff_t pixels) {
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

void labToXyz(const LabToXyz_t& s, const uint16_t* source, uint16_t* destination,
              ptrdiff_t pixels) {
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
    state->tables =
        makeTables(state->fTable, [&](int i, int c) { return fOfSample(i, reciprocal[c]); });
    return state;
}

std::unique_ptr<LabToXyzState> makeLabToXyz(const uint16_t* white, bool fullScaleL) {
    auto state = std::make_unique<LabToXyzState>();
    std::copy_n(white, 3, state->white);
    state->lOffset = fullScaleL ? kLOffsetFullScale : kLOffset;
    state->lScale = fullScaleL ? kFPerLFullScale : kFPerL;
    state->tables =
        makeTables(state->xyzTable, [&](int i, int c) { return sampleOfF(i, white[c]); });
    return state;
}

}  // namespace lumoxa

using namespace lumoxa;

void icConvertXYZToLab(const void* state, const unsigned short* source, unsigned short* destination,
                       int pixels) {
    runOnAllCores<XyzToLab_t, xyzToLab>(*static_cast<const XyzToLab_t*>(state), source, destination,
                                        pixels, 3, 3);
}

void icConvertLabToXyz(const void* state, const unsigned short* source, unsigned short* destination,
                       int pixels) {
    runOnAllCores<LabToXyz_t, labToXyz>(*static_cast<const LabToXyz_t*>(state), source, destination,
                                        pixels, 3, 3);
}
