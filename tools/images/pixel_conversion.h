// SPDX-License-Identifier: Apache-2.0
//
// A colour conversion as a libvips operation.
#pragma once

#include "lumoxa/lumoxa.hpp"
#include "tools/images/vips_handle.h"

namespace lumoxa_tool {

/// How pixels become pixels. With its conversion, it must outlive the image that convertPixels
/// returns.
struct PixelPlan {
    const lumoxa::Conversion* conversion = nullptr;
    int sourceBands = 0;
    int extras = 0;  ///< bands behind the colours that are kept, alpha first
    bool sourceSixteenBits = false;
    bool targetSixteenBits = false;
};

/// An image that converts regions of `source` as they are asked for, on libvips' threads. Extra
/// bands are carried over, rescaled where the sample sizes differ. Metadata is kept.
///
/// @return null with a libvips error when it can't be made
ImageHandle convertPixels(VipsImage* source, const PixelPlan& plan,
                          VipsInterpretation interpretation);

}  // namespace lumoxa_tool
