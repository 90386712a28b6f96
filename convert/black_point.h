// SPDX-License-Identifier: Apache-2.0
//
// Black points and their compensation (ISO 18619): how dark a profile's black is under an intent,
// and the scaling in XYZ that puts one black on another and leaves white where it is.
//
// Detection knows nothing of how conversions are evaluated: it asks a probe. Arithmetic is in
// double and in a fixed order, so that black points have the same bits everywhere.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "lumoxa/types.h"

namespace lumoxa::engine {

/// What the detection asks of a profile under an intent: perceptual, relative colorimetric or
/// saturation. Absolute colorimetry has no compensation.
///
/// A function converts `count` packed colours. Device values are 0..1 (1 is full ink or full
/// light); Lab is relative to the medium's white under D50. What a function gets is finite, even if
/// the tables of a profile answer with what is not a number.
///
///   called for           source                          destination
///   toLab                always                          without LUTs; relative colorimetric
///   toDevicePerceptual   CMYK, if there is one           relative colorimetric CMYK, likewise
///   toDevice             never                           with LUTs
///   toLabColorimetric    never                           with LUTs
///
/// A function that is never called may be empty. An empty toDevicePerceptual says that the profile
/// has no PCS-to-device transform.
struct BlackPointProbe {
    using Conversion = std::function<void(const float* from, float* to, int count)>;

    uint32_t colorSpace = 0;        ///< signature of the device's colour space
    int channels = 0;               ///< of the device, 1..15
    bool hasLuts = false;           ///< made of A2B and B2A tags, not of curves and matrix
    Conversion toLab;               ///< device to Lab under the intent
    Conversion toDevice;            ///< Lab to device under the intent
    Conversion toLabColorimetric;   ///< device to Lab, relative colorimetric
    Conversion toDevicePerceptual;  ///< Lab to device, perceptual
};

/// A black point is neutral: its lightness is all there is to it.
struct BlackPoint {
    double L = 0;             ///< 0..50
    const char* origin = "";  ///< how it was found, one of the phrases below
};

inline constexpr char kDarkestColorant[] = "darkest colorant";
inline constexpr char kPerceptualBlack[] = "device values of perceptual black";
inline constexpr char kFittedShadows[] = "parabola through the shadows of the tables";
inline constexpr char kNoBlackInTables[] = "zero, as the tables show no black";

/// The black point of a profile that colours come from (ISO 18619, 4.2). Throws what the probe's
/// functions throw, and std::bad_alloc.
BlackPoint sourceBlackPoint(const BlackPointProbe& probe);

/// The black point of a profile that colours go to (ISO 18619, 4.2). Throws likewise.
BlackPoint destinationBlackPoint(const BlackPointProbe& probe, icRenderingIntent intent);

/// XYZ' = scale x XYZ + offset, for XYZ relative to D50 with Y = 1 for white.
struct BlackPointMapping {
    double scale = 1;
    std::array<double, 3> offset = {0, 0, 0};
};

/// Puts the source's black on the destination's and white on itself (ISO 18619, 4.2).
/// For lightnesses of 0..50 the scale lies between 0.81 and 1.23.
BlackPointMapping mapBlack(double sourceL, double destinationL);

}  // namespace lumoxa::engine
