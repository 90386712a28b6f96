// SPDX-License-Identifier: Apache-2.0
//
// Eight lanes of single precision or of 32-bit integers, as vector kernels compute with them. Two
// forms, of which a source file chooses one by what it is compiled for: registers of AVX2, or what
// any compiler has. Operations round alike, so that both give the same bytes.
//
// The build defines LUMOXA_FORM_AVX2 for files of the AVX2 form.
//
// Each form has a namespace of its own, and files that include this include no header with inline
// functions beside it: a linker keeps one copy of an inline function, which may be one that the
// processor at hand can't run.
#pragma once

#include <cstdint>
#include <cstring>

#if defined(LUMOXA_FORM_AVX2)
#include "base/lanes_avx2.h"
#else
#include "base/lanes_portable.h"
#endif

namespace lumoxa::LUMOXA_LANES {

/// The lower bits of the first lanes of two fours, one after the other: the samples of two pixels.
/// `room`: whether a sample may be written behind them, which the next pixels then replace.
template <int Outputs, class Sample>
static inline void storePixels(Ints a, bool room, Sample* to) {
    if constexpr (Outputs == 4) {
        storeNarrow(a, to);
    } else {
        Sample samples[8];
        storeNarrow(a, samples);
        if (room) {
            std::memcpy(to, samples, 4 * sizeof(Sample));
            std::memcpy(to + Outputs, samples + 4, 4 * sizeof(Sample));
        } else {
            std::memcpy(to, samples, Outputs * sizeof(Sample));
            std::memcpy(to + Outputs, samples + 4, Outputs * sizeof(Sample));
        }
    }
}
template <int Outputs, class Sample>
static inline void storePixel(Ints a, Sample* to) {
    Sample samples[8];
    storeNarrow(a, samples);
    std::memcpy(to, samples, Outputs * sizeof(Sample));
}

/// `a` limited to 0 .. `top`; not-a-number gives 0.
static inline Floats clipped(Floats a, Floats top) {
    return smaller(larger(a, all(0.0f)), top);
}

}  // namespace lumoxa::LUMOXA_LANES
