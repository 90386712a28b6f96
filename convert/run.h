// SPDX-License-Identifier: Apache-2.0
//
// Pictures through a plan: any layout, extra channels, premultiplied alpha, threads, progress.
#pragma once

#include "convert/image_view.h"
#include "convert/plan.h"

namespace lumoxa::engine {

enum class RunResult { kDone, kCancelled };

struct RunOptions {
    int threads = 0;  ///< at most so many, the caller's among them; 0 for one a processor core
    bool premultiplied = false;  ///< colours are multiplied with the first extra channel, if any

    /// Called on the caller's thread: with 0 before the work, with the part of the rows done,
    /// rising from call to call, and with 1 at the end, whose answer doesn't count. True goes on,
    /// false stops: the rows that are left stay as they are. Null for none.
    bool (*progress)(double done, void* user) = nullptr;
    void* user = nullptr;  ///< handed to `progress`
};

/// Converts every pixel of `source` into the same place of `destination`, and copies the extra
/// channels. The result depends neither on threads nor on layouts. Nothing outside the
/// destination's samples is written.
///
/// A premultiplied run divides colours by alpha, converts them as 16-bit or floating-point samples
/// and multiplies them with alpha. Where alpha is full, its result is that of a plain run between
/// 16-bit and floating-point samples; with 8 bits on a side, as close as the plan's results for the
/// same colour in 8 and 16 bits are, and half a step of rounding.
///
/// @throws FaultError as checkViews, and with icErrInvalid for a negative number of threads;
///         std::bad_alloc. Nothing has been written then
RunResult runConversion(const Plan& plan, const PixelView& source, const PixelView& destination,
                        const RunOptions& options);

}  // namespace lumoxa::engine
