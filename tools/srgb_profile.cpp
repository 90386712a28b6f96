// SPDX-License-Identifier: Apache-2.0
#include "tools/srgb_profile.h"

#include <cmath>

#include "tools/display_profile.h"
#include "tools/sampled_curves.h"

namespace lumoxa_tool {
namespace {

// Primaries of BT.709 and D65, as the standard states them.
constexpr DisplayColorimetry kSrgb = {{{{0.64, 0.33}, {0.30, 0.60}, {0.15, 0.06}}},
                                      {0.3127, 0.3290}};

double linearLight(double encoded) {
    return encoded <= 0.04045 ? encoded / 12.92 : std::pow((encoded + 0.055) / 1.055, 2.4);
}

}  // namespace

std::vector<uint8_t> srgbCurveTag() {
    return sampledCurveTag(linearLight);
}

std::vector<uint8_t> makeSrgbProfile() {
    // A fixed date keeps the bytes, and with them converted files, the same from run to run.
    const icDateTimeNumber date = {2024, 1, 1, 0, 0, 0};
    return makeDisplayProfile(
        {kSrgb, srgbCurveTag(), "sRGB (IEC 61966-2-1)", kFreeCopyright, date});
}

}  // namespace lumoxa_tool
