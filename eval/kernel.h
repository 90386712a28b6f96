// SPDX-License-Identifier: Apache-2.0
//
// The shape that all kernels share, and the slicing of a run over all cores.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/fan_out.h"
#include "lut/curve_mask.h"

namespace lumoxa {

/// Converts `pixels` packed pixels: channels interleaved, pixel after pixel. Below 1 does nothing.
using KernelFn = void (*)(const void* state, const void* source, void* destination, int pixels,
                          CurveMask curves);

/// A typed kernel body as a KernelFn.
template <class State, class In, class Out,
          void (*Body)(const State&, const In*, Out*, ptrdiff_t, CurveMask)>
void kernel(const void* state, const void* source, void* destination, int pixels,
            CurveMask curves) {
    Body(*static_cast<const State*>(state), static_cast<const In*>(source),
         static_cast<Out*>(destination), pixels, curves);
}

/// Runs body(source, destination, pixels) over all processor cores that the pixels are worth, each
/// on a slice of them.
template <class Body>
void runOnAllCores(const uint16_t* source, uint16_t* destination, int pixels, ptrdiff_t inSamples,
                   ptrdiff_t outSamples, const Body& body) {
    const int64_t threads = threadsForPixels(pixels, hardwareThreads());
    fanOutWithCaller(pixels, threads, [=, &body](int64_t, int64_t first, int64_t count) {
        const auto offset = static_cast<ptrdiff_t>(first);
        body(source + offset * inSamples, destination + offset * outSamples,
             static_cast<ptrdiff_t>(count));
    });
}

/// A body of three samples a pixel on both sides as a KernelFn that runs on all cores.
template <class State, void (*Body)(const State&, const uint16_t*, uint16_t*, ptrdiff_t, CurveMask)>
void kernelOnAllCores(const void* state, const void* source, void* destination, int pixels,
                      CurveMask curves) {
    const auto& s = *static_cast<const State*>(state);
    runOnAllCores(static_cast<const uint16_t*>(source), static_cast<uint16_t*>(destination), pixels,
                  3, 3, [&s, curves](const uint16_t* in, uint16_t* out, ptrdiff_t count) {
                      Body(s, in, out, count, curves);
                  });
}

}  // namespace lumoxa
