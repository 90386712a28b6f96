// SPDX-License-Identifier: Apache-2.0
//
// The shape that all kernels share, and the slicing of a run over all cores.
#pragma once

#include <cstddef>
#include <cstdint>

#include "eval/fan_out.h"

namespace lumoxa {

/// Converts `pixels` packed pixels: channels interleaved, pixel after pixel. Below 1 does nothing.
using KernelFn = void (*)(const void* state, const void* source, void* destination, int pixels);

/// A typed kernel body as a KernelFn.
template <class State, class In, class Out, void (*Body)(const State&, const In*, Out*, ptrdiff_t)>
void kernel(const void* state, const void* source, void* destination, int pixels) {
    Body(*static_cast<const State*>(state), static_cast<const In*>(source),
         static_cast<Out*>(destination), pixels);
}

/// Runs a 16-bit kernel body over all processor cores, each on a slice of the pixels.
template <class State, void (*Body)(const State&, const uint16_t*, uint16_t*, ptrdiff_t)>
void runOnAllCores(const State& state, const uint16_t* source, uint16_t* destination, int pixels,
                   ptrdiff_t inSamples, ptrdiff_t outSamples) {
    fanOut(pixels, hardwareThreads(), [=, &state](int64_t first, int64_t count) {
        const auto offset = static_cast<ptrdiff_t>(first);
        Body(state, source + offset * inSamples, destination + offset * outSamples,
             static_cast<ptrdiff_t>(count));
    });
}

}  // namespace lumoxa
