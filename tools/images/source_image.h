// SPDX-License-Identifier: Apache-2.0
//
// The image to convert, opened for reading in one pass.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "tools/images/vips_handle.h"

namespace lumoxa_tool {

struct SourceImage {
    ImageHandle image;  ///< 8-bit or 16-bit samples
    int bands = 0;
    bool alpha = false;        ///< bands behind the colours are alpha and the like
    bool sixteenBits = false;  ///< samples of `image`
    uint32_t space = 0;        ///< colour space that the file claims, 0 when it claims none
    int pages = 1;             ///< pages in the file, of which the first is here
    std::optional<std::vector<uint8_t>> profile;  ///< the embedded one
};

/// @param path  a file name, optionally with libvips' load options: "scan.tif[page=2]"
/// @throws InputError for a file that can't be read or holds samples that no profile describes
SourceImage openSourceImage(const std::string& path);

}  // namespace lumoxa_tool
