// SPDX-License-Identifier: Apache-2.0
//
// Colour conversions in C++: profiles, conversions and pixels, with exceptions. Header only, for
// C++17 and later, over the functions of lmx.h; what is in those isn't said again here.
//
//     using namespace lumoxa;
//     const Conversion toPress(Profile::named("sRGB"), Profile::fromFile("press.icc"));
//     toPress.run(ImageView::packed(rgb, width, height, 3),
//                 ImageView::packed(cmyk, width, height, 4));
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "lumoxa/conversion.hpp"
#include "lumoxa/make.hpp"
#include "lumoxa/profile.hpp"

namespace lumoxa {

/// Version of the library, "2.1.0" or the like.
inline const char* version() {
    return lmx_version();
}

/// What a profile holds and what is wrong with it, as JSON (docs/inspect.md); also of bytes that
/// are too broken to load. @throws Error only for a null pointer and for want of memory
inline std::string inspect(const void* data, size_t size) {
    return detail::text(lmx_inspect, data, static_cast<uint64_t>(size));
}

}  // namespace lumoxa
