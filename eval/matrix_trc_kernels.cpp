// SPDX-License-Identifier: Apache-2.0
#include "eval/matrix_trc_kernels.h"

#include <algorithm>

#include "eval/kernel.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

// All three samples of a gray pixel end here, X, Y and Z too: the bound of L* serves for both.
constexpr float kGrayTop = kLabLMax;

uint16_t graySample(float v) {
    return roundClipped<uint16_t>(v, kGrayTop);
}

/// Factors from the gray value to the three samples of a connection space, and their offsets.
struct GrayAxis {
    float factor[3];
    float offset[3];
};

GrayAxis grayAxis(uint32_t space) {
    // D50 white (0.9642, 1, 0.8249, 1.0 = 32768) over 65535.
    if (space == kSpaceXyz) return {{0.4821088f, 0.5000076f, 0.41245136f}, {0, 0, 0}};
    // L* = 100 (65280) over 65535; a* and b* are neutral.
    return {{0.99610895f, 0, 0}, {0, kLabNeutral, kLabNeutral}};
}

}  // namespace

void grayTrcToPcs(const trcMatrix_t& s, const uint16_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask) {
    const bool curves = mask.input && s.hasCurves != 0;
    const GrayAxis axis = grayAxis(s.outSpace);
    for (ptrdiff_t i = 0; i < pixels; ++i, destination += 3) {
        const float v = grayValue(s, source[i], curves);
        for (int c = 0; c < 3; ++c)
            destination[c] = graySample(v * axis.factor[c] + axis.offset[c]);
    }
}

void grayTrcToPcs(const trcMatrix_t& s, const uint8_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask) {
    const bool curves = mask.input && s.hasCurves != 0;
    const GrayAxis axis = grayAxis(s.outSpace);
    for (ptrdiff_t i = 0; i < pixels; ++i) {
        const float v = grayValue(s, source[i], curves);
        const uint16_t first = graySample(v * axis.factor[0] + axis.offset[0]);
        if (first < kLabLMax) *destination++ = first;
        *destination++ = graySample(v * axis.factor[1] + axis.offset[1]);
        *destination++ = graySample(v * axis.factor[2] + axis.offset[2]);
    }
}

void pcsToGrayTrc(const trcMatrix_t& s, const uint16_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask) {
    constexpr float kXyzStep = 3.0517578e-5f;  // 1 / 32768
    const bool curves = mask.output && s.hasCurves != 0;
    const bool lab = s.inSpace == kSpaceLab;
    const float top = curves ? static_cast<float>(s.curveEntries - 1) : kSampleMax16;
    const float scale = lab ? top / static_cast<float>(kLabLMax) : top * kXyzStep;
    const uint16_t* lightness = source + (lab ? 0 : 1);
    for (ptrdiff_t i = 0; i < pixels; ++i, lightness += 3) {
        const float x = static_cast<float>(*lightness) * scale;
        destination[i] = curves ? roundWrapped<uint16_t>(lookUp(s.curves[0], s.curveEntries - 2, x))
                                : roundClipped<uint16_t>(x);
    }
}

}  // namespace lumoxa

using namespace lumoxa;

void icConvertTrcMatrix(const void* state, const unsigned char* source, unsigned short* destination,
                        int pixels) {
    const auto& s = *static_cast<const trcMatrix_t*>(state);
    if (s.inSpace == kSpaceGray) {
        grayTrcToPcs(s, source, destination, pixels, {});
    } else {
        trcThenMatrix(s, source, destination, pixels, {});
    }
}

void icConvertTrcMatrix(const void* state, const unsigned short* source,
                        unsigned short* destination, int pixels) {
    const auto& s = *static_cast<const trcMatrix_t*>(state);
    if (s.inSpace == kSpaceGray) {
        grayTrcToPcs(s, source, destination, pixels, {});
    } else {
        kernelOnAllCores<trcMatrix_t, trcThenMatrix<uint16_t, uint16_t>>(state, source, destination,
                                                                         pixels, {});
    }
}

void icConvertMatrixTrc(const void* state, const unsigned short* source,
                        unsigned short* destination, int pixels) {
    const auto& s = *static_cast<const trcMatrix_t*>(state);
    if (s.outSpace == kSpaceGray) {
        pcsToGrayTrc(s, source, destination, pixels, {});
    } else {
        matrixThenTrc(s, source, destination, pixels, {});
    }
}
