// SPDX-License-Identifier: Apache-2.0
#include "tools/output_format.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iterator>
#include <string_view>

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

// JPEG's usual quality of 75 halves the resolution of colour, which is what this tool is about: 92
// keeps it whole.
constexpr OutputFormat kFormats[] = {
    // suffix, name, options, gray, cmyk, alpha, manyExtras, sixteenBits
    {".tif", "TIFF", "", true, true, true, true, true},
    {".tiff", "TIFF", "", true, true, true, true, true},
    {".png", "PNG", "", true, false, true, false, true},
    {".jpg", "JPEG", "[Q=92]", true, true, false, false, false},
    {".jpeg", "JPEG", "[Q=92]", true, true, false, false, false},
    {".webp", "WebP", "[Q=92]", false, false, true, false, false},
};

}  // namespace

const OutputFormat& outputFormat(const std::string& path) {
    std::string suffix = std::filesystem::path(path).extension().string();
    std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                   [](unsigned char character) { return std::tolower(character); });
    for (const OutputFormat& format : kFormats) {
        if (suffix == format.suffix) return format;
    }
    throw UsageError(path +
                     ": format can't be told from the name; end it in .tif, .png, .jpg or .webp");
}

void requireSpace(const std::string& path, const OutputFormat& format, uint32_t space) {
    if (space != kRgb && space != kGray && space != kCmyk) {
        throw UsageError(path + ": no image format holds " + spaceText(space) +
                         " pixels; choose a gray, RGB or CMYK target profile");
    }
    if (space == kCmyk && !format.cmyk) {
        throw UsageError(path + ": " + format.name + " can't hold CMYK; write .tif or .jpg");
    }
    if (space == kGray && !format.gray) {
        throw UsageError(path + ": " + format.name + " can't hold gray; write .tif, .png or .jpg");
    }
}

void requirePrint(const std::string& path, const OutputFormat& format, const std::string& options) {
    if (std::string_view(format.name) != "TIFF") {
        throw UsageError(path + ": a print file of three channels is a TIFF; write .tif");
    }
    for (const char* lossy : {"jpeg", "webp"}) {
        if (options.find(lossy) == std::string::npos) continue;
        throw UsageError(path + ": compression " + lossy +
                         " changes device values; choose deflate or lzw");
    }
}

void requireProfileKept(const std::string& path, const std::string& options) {
    static constexpr std::string_view kDropping[] = {"strip", "profile", "keep"};
    static constexpr const char* kAround = "[], \t\"'";  // the option parser skips these
    for (size_t at = 0; at < options.size(); at = options.find(',', at + 1)) {
        const size_t first = options.find_first_not_of(kAround, at);
        if (first == std::string::npos) return;
        const size_t end = options.find_first_of("=,] \t\"'", first);
        const std::string_view name = std::string_view(options).substr(first, end - first);
        if (std::find(std::begin(kDropping), std::end(kDropping), name) == std::end(kDropping)) {
            continue;
        }
        throw UsageError(path + ": save option '" + std::string(name) +
                         "' may drop the target profile; leave it out");
    }
}

}  // namespace lumoxa_tool
