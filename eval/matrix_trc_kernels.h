// SPDX-License-Identifier: Apache-2.0
//
// Kernels of the matrix/TRC kinds: curves then matrix ('TrcM'), matrix then inverse curves
// ('MatT'), and their one-channel gray forms. Single precision throughout; a matrix row is summed
// as m1 c1 + m0 c0 + m2 c2.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "base/pcs_encoding.h"
#include "lumoxa/evaluate.h"
#include "lut/curve_mask.h"
#include "lut/table_lookup.h"

namespace lumoxa {

/// Curve tables hold 16-bit values; an 8-bit sample is their high byte.
template <class Sample>
inline constexpr float kFromCurveScale = sizeof(Sample) == 1 ? 0.00390625f : 1.0f;

template <class Sample>
inline constexpr float kFullScale = static_cast<float>(std::numeric_limits<Sample>::max());

inline float matrixRow(const float* m, const float* c) {
    return m[1] * c[1] + m[0] * c[0] + m[2] * c[2];
}

/// Tone curves, then matrix, three channels. Results are clipped.
template <class In, class Out>
void trcThenMatrix(const trcMatrix_t& s, const In* source, Out* destination, ptrdiff_t pixels,
                   CurveMask mask) {
    const int32_t last = s.curveEntries - 2;
    const float scale = static_cast<float>(s.curveEntries - 1) / kFullScale<In>;
    const bool curves = mask.input && s.hasCurves != 0;
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        float c[3];
        for (int k = 0; k < 3; ++k) {
            const auto sample = static_cast<float>(source[k]);
            c[k] =
                curves ? lookUp(s.curves[k], last, sample * scale) * kFromCurveScale<Out> : sample;
        }
        for (int r = 0; r < 3; ++r)
            destination[r] = roundClipped<Out>(matrixRow(s.matrix + 3 * r, c));
    }
}

/// Matrix, then inverse tone curves, three channels. What the curves give is stored without
/// clipping, so a table value above 65535 wraps. Only 16-bit sources are limited before the curves;
/// what an 8-bit source drives below 0 extends the first segment.
template <class In, class Out>
void matrixThenTrc(const trcMatrix_t& s, const In* source, Out* destination, ptrdiff_t pixels,
                   CurveMask mask) {
    const int32_t last = s.curveEntries - 2;
    const float scale = static_cast<float>(s.curveEntries - 1) / kFullScale<In>;
    const bool curves = mask.output && s.hasCurves != 0;
    for (ptrdiff_t i = 0; i < pixels; ++i, source += 3, destination += 3) {
        const float c[3] = {static_cast<float>(source[0]), static_cast<float>(source[1]),
                            static_cast<float>(source[2])};
        for (int r = 0; r < 3; ++r) {
            float d = matrixRow(s.matrix + 3 * r, c);
            if constexpr (sizeof(In) == 2) d = clipped(d, kSampleMax16);
            destination[r] =
                curves
                    ? roundWrapped<Out>(lookUp(s.curves[r], last, d * scale) * kFromCurveScale<Out>)
                    : roundClipped<Out>(d);
        }
    }
}

/// The linear gray value of a device sample, 0..65535 with curves; without, the raw sample.
template <class In>
float grayValue(const trcMatrix_t& s, In sample, bool curves) {
    const auto raw = static_cast<float>(sample);
    if (!curves) return raw;
    const float scale = static_cast<float>(s.curveEntries - 1) / kFullScale<In>;
    return clipped(lookUp(s.curves[0], s.curveEntries - 2, raw * scale), kSampleMax16);
}

/// Gray device samples to the connection space: along the axis of the D50 white for XYZ, along L*
/// for Lab.
void grayTrcToPcs(const trcMatrix_t& s, const uint16_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask);

/// As the 16-bit form, but a first sample is stored only while it lies below the top; otherwise the
/// rest of the run moves up by one sample. A run is thus a line, or lines would run together.
void grayTrcToPcs(const trcMatrix_t& s, const uint8_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask);

/// Connection space to gray device samples: L* of Lab or Y of XYZ through the inverse curve.
void pcsToGrayTrc(const trcMatrix_t& s, const uint16_t* source, uint16_t* destination,
                  ptrdiff_t pixels, CurveMask mask);

}  // namespace lumoxa
