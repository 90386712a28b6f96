// SPDX-License-Identifier: Apache-2.0
//
// Which kernel serves a transform at a pair of sample depths.
#pragma once

#include "eval/kernel.h"
#include "xform/xform_object.h"

namespace lumoxa {

enum class Depth { k8, k16 };

/// A kernel bound to a transform's state.
struct BoundKernel {
    KernelFn run = nullptr;
    const void* state = nullptr;
    int inSamples = 0;     // samples of a source pixel
    int outSamples = 0;    // samples of a destination pixel
    bool perLine = false;  // must see every line by itself

    explicit operator bool() const { return run != nullptr; }
    void operator()(const void* source, void* destination, int pixels) const {
        run(state, source, destination, pixels);
    }
};

/// The kernel for device and LUT kinds; empty when the kind has none for these depths.
BoundKernel chooseKernel(const icXformInternal& xform, Depth in, Depth out);

}  // namespace lumoxa
