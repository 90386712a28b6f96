// SPDX-License-Identifier: Apache-2.0
//
// A colour transform as a libvips operation.
#pragma once

#include "tools/transform_chain.h"
#include "tools/vips_handle.h"

namespace lumoxa_tool {

/// How pixels become pixels. With its conversion, it must outlive the image that convertPixels
/// returns.
struct PixelPlan {
    const Conversion* conversion = nullptr;
    int sourceColours = 0;
    int targetColours = 0;
    bool sourceAlpha = false;
    bool targetAlpha = false;  ///< only with sourceAlpha
    bool sourceSixteenBits = false;
    bool targetSixteenBits = false;
};

/// An image that converts regions of `source` as they are asked for, on libvips' threads. Alpha is
/// carried over, rescaled where the sample sizes differ. Metadata is kept.
///
/// @return null with a libvips error when it can't be made
ImageHandle convertPixels(VipsImage* source, const PixelPlan& plan,
                          VipsInterpretation interpretation);

}  // namespace lumoxa_tool
