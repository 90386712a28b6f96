// SPDX-License-Identifier: Apache-2.0
//
// Which kernel serves a transform at a pair of sample depths.
#pragma once

#include "eval/kernel.h"
#include "xform/xform_object.h"

namespace lumoxa {

enum class Depth { k8, k16 };

/// A kernel bound to a transform's state and to the curves that take part.
struct BoundKernel {
    KernelFn run = nullptr;
    const void* state = nullptr;
    int inSamples = 0;     // samples of a source pixel
    int outSamples = 0;    // samples of a destination pixel
    bool perLine = false;  // must see every line by itself
    CurveMask curves = {};
    int inSampleBytes = 2;
    int outSampleBytes = 2;

    explicit operator bool() const { return run != nullptr; }
    /// Converts, on as many cores as the pixels are worth.
    void operator()(const void* source, void* destination, int pixels) const;
};

/// The kernel for a transform by itself: a device or LUT kind. Empty when the kind has none for
/// these depths.
BoundKernel chooseKernel(const icXformInternal& xform, Depth in, Depth out);

/// The 16-bit kernel of a transform of any kind as the stage of a chain. Empty for a transform that
/// converts nothing.
BoundKernel chooseStageKernel(const icXformInternal& xform, CurveMask curves = {});

}  // namespace lumoxa
