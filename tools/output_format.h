// SPDX-License-Identifier: Apache-2.0
//
// What the image formats that the tool writes can hold.
#pragma once

#include <cstdint>
#include <string>

namespace lumoxa_tool {

/// One file format. All of them embed profiles, which is why others are not on offer.
struct OutputFormat {
    const char* suffix;
    const char* name;
    const char* options;  ///< libvips' save options where the user gives none
    bool gray;
    bool cmyk;
    bool alpha;
    bool manyExtras;  ///< more extra channels than alpha
    bool sixteenBits;
};

/// The format that a file name asks for with its suffix.
/// @throws UsageError for a suffix that isn't known
const OutputFormat& outputFormat(const std::string& path);

/// @throws UsageError when the format can't hold pixels of a colour space; names those that can
void requireSpace(const std::string& path, const OutputFormat& format, uint32_t space);

/// @param options  libvips' save options with their brackets
/// @throws UsageError when the format or its compression can't keep three channels of ink as they
///         are
void requirePrint(const std::string& path, const OutputFormat& format, const std::string& options);

/// @param options  libvips' save options with their brackets
/// @throws UsageError for an option by which the file would lose its profile or get another one
void requireProfileKept(const std::string& path, const std::string& options);

}  // namespace lumoxa_tool
