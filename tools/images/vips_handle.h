// SPDX-License-Identifier: Apache-2.0
//
// Ownership of libvips objects and its error texts.
#pragma once

#include <memory>
#include <string>

#include <vips/vips.h>

namespace lumoxa_tool {

struct VipsUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
using ImageHandle = std::unique_ptr<VipsImage, VipsUnref>;

struct GlibFree {
    void operator()(void* block) const { g_free(block); }
};
using GlibText = std::unique_ptr<char, GlibFree>;

/// What libvips has to say about the last failure.
inline std::string takeVipsError() {
    std::string text = vips_error_buffer();
    vips_error_clear();
    text.erase(text.find_last_not_of(" \n") + 1);
    return text;
}

}  // namespace lumoxa_tool
