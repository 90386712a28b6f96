// SPDX-License-Identifier: Apache-2.0
//
// Gray conversion: tone tables of a black-and-white print made of three device channels, a main one
// and two companions that set its tone.
//
// A gray profile with the private tag 'wzgd' holds measured patches of such a device. `icXformGet`
// builds the tables from them; the functions here are its stages, for programs that measure, fit
// and rebuild tables themselves.
//
// A gray transform has three samples a pixel on both sides: L* (a* and b* are not read) to the main
// channel and the companions, or the main channel to L*, a*, b*. Converted to 8 bits, a table value
// of 65408 or more wraps to 0, as which the darkest black then reads like paper: use 16 bits for
// print.
//
// Scales: device values 0..65535, L* 0..100 as 0..65280, a* and b* as 32768 + 256 x value. A tone
// is a pair of a* and b* in that encoding; null means neutral (32768, 32768).
#pragma once

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// State of a gray transform, kinds 'KtoL' (gray to L*) and 'LtoK' (L* to gray). All blocks are of
/// the C heap. A state is read by any number of threads, and rebuilt by one.
struct GrayConv_t {
    uint32_t built;       ///< 1 when the tables are valid; 0: samples pass through
    uint32_t inSpace;     ///< colour space of the source
    uint32_t outSpace;    ///< colour space of the destination
    uint32_t outEntries;  ///< entries of each out table: 3856 for 'LtoK', else 0
    uint32_t inEntries;   ///< entries of each in table: 4096 for 'KtoL', else 0
    float* curveX;        ///< device values of the curves' steps + 2 points, rising; start of one
                          ///< block that holds all six curves
    float* outCurveA;     ///< first companion's device value
    float* outCurveB;     ///< second companion's device value
    float* curveL;        ///< L*, falling
    float* inCurveA;      ///< a* achieved
    float* inCurveB;      ///< b* achieved
    uint8_t* tagData;     ///< the gray tag: steps at byte 10, N as a host-order number at byte 8
    float* samples;       ///< XYZ triples of the patches, as in the tag
    uint16_t keyFirst;    ///< a* of the tone that the tables were first built for
    uint16_t keySecond;   ///< b* of that tone
    uint16_t* outTable1;  ///< L* to the main channel; start of one block of the three
    uint16_t* outTable2;  ///< L* to the first companion
    uint16_t* outTable3;  ///< L* to the second companion
    uint16_t* inTable1;   ///< device value to L*; start of one block of the three
    uint16_t* inTable2;   ///< device value to a*
    uint16_t* inTable3;   ///< device value to b*
    uint32_t layoutFlag;  ///< of the tag: 2 for a plain ramp, 0 or 1 for grids
};

/// Fits tone curves to measured patches.
///
/// With grids, each tone step s = 1 .. steps has the main channel at g = 65535 s / (steps + 1), and
/// the two companions that come nearest to the wanted tone are searched on surfaces of a* and b*
/// over the N x N patches (cubic along one companion, linear along the other; downhill simplex,
/// Nelder and Mead). Lab is relative to the paper white. L* is made to fall from paper to black by
/// pooling adjacent violators (isotonic regression). With a ramp, the companions follow the main
/// channel and the tone is what was measured.
///
/// @param n           grid points of each companion, or length of the ramp; at least 2
/// @param steps       tone steps, 1..255
/// @param samples     XYZ triples, Y = 1 for a perfect white. Grids: n x n for each step, companion
///                    values 65535 j / (n - 1) and 65535 k / (n - 1), k varying fastest; then paper
///                    (all channels 0) and the darkest black (main channel 65535, companions 0).
///                    A ramp: n triples from paper to black at even steps.
/// @param layoutFlag  2 for a ramp, 0 or 1 for grids
/// @param pair        a* and b* of the wanted tone in the 16-bit Lab encoding; null is neutral
/// @param parameter   t in 0..1, which fades the tone to paper and black: a* and b* times
///                    1 - t (2 L* / 100 - 1)^2
/// @param curves      steps + 2 values each: abscissae, companions, L*, achieved a* and b*
/// @return 0; icErrInvalid for a null argument, a count or layout outside those, or a paper that
///         reflects nothing; icErrNoMemory
LUMOXA_API int icBuildGrayPreLuts(int n, int steps, const float* samples, int layoutFlag,
                                  const unsigned short* pair, float parameter,
                                  float* const curves[6]);

/// Makes the three in tables by sampling the splines of L*, a* and b*.
///
/// Where the state has tables and `pair` is the tone that it was built for first, the tables stay
/// as they are, even if they have been made for another tone since. Any other tone fits the curves
/// and makes the tables anew, each time.
///
/// @param state      curves, tag and samples filled
/// @param intent     not used: what a device value looks like does not depend on it
/// @param pair       a* and b* of the wanted tone in the 16-bit Lab encoding; null is neutral
/// @param parameter  fade of the tone, as `icBuildGrayPreLuts`
/// @return 0; icErrInvalid for a null state, one without curves, tag or samples that curves can be
///         fitted to, or with fewer than 2 entries; icErrNoMemory, which leaves it without tables
LUMOXA_API int icBuildGrayInLuts(GrayConv_t* state, icRenderingIntent intent,
                                 const unsigned short* pair, float parameter);

/// Makes the three out tables by inverting the spline of L*, and smooths them.
///
/// For the perceptual intent L* 0..100 is spread from the darkest tone to paper; for others,
/// what is darker than the device becomes its darkest tone. Tone and tables as for
/// `icBuildGrayInLuts`, except that curves for another tone are fitted without fade.
///
/// @param state             curves, tag and samples filled; a tag with other than 16 steps is
///                          resampled to 16 by the splines of its curves
/// @param intent            0 for black compensation
/// @param pair              a* and b* of the wanted tone in the 16-bit Lab encoding; null is
///                          neutral
/// @param shaping           non-zero: a tone curve, perceptual intent only, that keeps the ends and
///                          gives the middle the contrast that the compensation took
/// @param shapingParameter  0 gives the middle its full slope, above 0 more, below 0 less. For a
///                          black of L* = 100 b the curve rises throughout from
///                          4 - 12 / (1 + 2 b) to 8 - 24 b, -8..8 for b = 0; beyond that its ends
///                          turn back
/// @return as `icBuildGrayInLuts`
LUMOXA_API int icBuildGrayOutLuts(GrayConv_t* state, icRenderingIntent intent,
                                  const unsigned short* pair, int shaping, float shapingParameter);
