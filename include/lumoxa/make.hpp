// SPDX-License-Identifier: Apache-2.0
//
// Profiles made from descriptions and measurements, in C++.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "lumoxa/lmx_make.h"
#include "lumoxa/profile.hpp"

namespace lumoxa {

/// An RGB display; sRGB unless changed.
struct Display {
    using Chromaticity = std::array<double, 2>;  ///< CIE 1931 x and y

    Chromaticity red = {0.64, 0.33}, green = {0.30, 0.60}, blue = {0.15, 0.06};
    Chromaticity white = {0.3127, 0.3290};    ///< inside the triangle of the three
    ToneCurve curve = ToneCurve::sRGB();      ///< of all three channels
    uint32_t version = 0x04300000;            ///< 4.3, or 0x02400000 for 2.4
    std::string description = "RGB display";  ///< UTF-8, ASCII for version 2.4
    std::string copyright = "No copyright, use freely";
};

/// The profile of a display: matrix and curves, adapted to D50. @throws Error for what no display
/// can be (primaries on a line, a white outside of them) and for texts that the version can't hold
inline Profile makeDisplay(const Display& display) {
    const lmx_curve curve = display.curve.record();
    lmx_display record = {};
    record.size = sizeof record;
    record.version = display.version;
    for (size_t i = 0; i < 2; ++i) {
        record.red[i] = display.red[i];
        record.green[i] = display.green[i];
        record.blue[i] = display.blue[i];
        record.white[i] = display.white[i];
    }
    record.curve = &curve;
    record.description = display.description.c_str();
    record.copyright = display.copyright.c_str();
    lmx_profile* handle = nullptr;
    detail::call(lmx_make_display, static_cast<const lmx_display*>(&record), &handle);
    return Profile(handle);
}

/// A printed and measured patch of a gray print device: amounts of the main ink and its two weak
/// companions, 0 for bare paper, and what was measured, with Y = 1 or Y = 100 for a perfect white.
struct GrayPatch {
    double main = 0, first = 0, second = 0;
    double X = 0, Y = 0, Z = 0;
};

/// What else there is to say about a gray print device.
struct GrayPrint {
    double range = 1;  ///< device value of full ink: 1, 255, 65535, 100 ...
    std::string description = "Gray print of three channels";  ///< ASCII
    std::string copyright = "No copyright, use freely";        ///< ASCII
};

/// The profile of a gray print device of three channels. `lmx_gray_print` tells which patches it
/// takes, in any order. @throws Error that names a patch which is missing, too many or impossible
inline Profile makeGrayPrint(const std::vector<GrayPatch>& patches, const GrayPrint& print = {}) {
    std::vector<lmx_gray_patch> rows;
    rows.reserve(patches.size());
    for (const GrayPatch& patch : patches) {
        rows.push_back({{patch.main, patch.first, patch.second}, {patch.X, patch.Y, patch.Z}});
    }
    lmx_gray_print record = {};
    record.size = sizeof record;
    record.patches = rows.data();
    record.patch_count = static_cast<int64_t>(rows.size());
    record.range = print.range;
    record.description = print.description.c_str();
    record.copyright = print.copyright.c_str();
    lmx_profile* handle = nullptr;
    detail::call(lmx_make_gray_print, static_cast<const lmx_gray_print*>(&record), &handle);
    return Profile(handle);
}

/// JSON: what the patches of a gray print profile are, and how near its neutral prints come to it.
/// @throws Error for another profile
inline std::string grayPrintReport(const Profile& profile) {
    return detail::text(lmx_gray_print_report, profile.handle());
}

}  // namespace lumoxa
