// SPDX-License-Identifier: Apache-2.0
//
// Converting pixels through a transform.
//
// Samples are 8-bit (0..255) or 16-bit in the byte order of the machine. Connection-space samples
// have these 16-bit encodings: XYZ with 1.0 = 32768; Lab with L* 0..100 = 0..65280 and a*, b* =
// 32768 + 256 x value. Their 8-bit samples scale by 256, those of all other spaces by 257.
#pragma once

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// Sample types of a pixel layout.
inline constexpr int32_t icSamples8 = 1;   ///< unsigned 8-bit
inline constexpr int32_t icSamples16 = 5;  ///< unsigned 16-bit, native byte order

/// One side of a conversion: a rectangle of pixels in memory that the caller owns.
struct icPixelLayout_t {
    int32_t dataType;      ///< icSamples8 or icSamples16; with any other value nothing is converted
    int32_t contiguous;    ///< non-zero: lines of packed, interleaved pixels from channelData[0]
    int32_t pixelCount;    ///< pixels of a line
    int32_t lineCount;     ///< lines
    int32_t pixelStep;     ///< bytes between samples of one channel; used when not contiguous
    int32_t lineStep;      ///< bytes between line starts; may be negative
    int32_t channelCount;  ///< channels of a pixel, 1..32
    void* channelData[32];  ///< line 0 of each channel; only [0] counts when contiguous, and is
                            ///< then aligned to the samples
};

/// State of a matrix/TRC conversion: kinds 'TrcM' and 'MatT'.
struct trcMatrix_t {
    int32_t hasCurves;     ///< zero: curves are identities and samples pass through unchanged
    uint32_t inSpace;      ///< 'GRAY' selects the one-channel form of 'TrcM'
    uint32_t outSpace;     ///< 'GRAY' selects the one-channel form of 'MatT'
    int32_t curveEntries;  ///< entries of each curve table, at least 2
    float matrix[9];       ///< row-major 3x3
    float* curves[3];      ///< one table a device channel, values on the scale 0..65535
};

/// State of the conversion from XYZ to Lab against a white.
struct XyzToLab_t {
    int32_t refCount;
    uint16_t white[3];    ///< reference white, XYZ with 1.0 = 32768
    uint16_t* fTable[3];  ///< 65536 entries a channel: f(t) of CIE 15 on the scale 1.0 = 65280
};

/// State of the conversion from Lab to XYZ against a white.
struct LabToXyz_t {
    int32_t refCount;
    uint16_t white[3];      ///< reference white, XYZ with 1.0 = 32768
    uint16_t* xyzTable[3];  ///< 65536 entries a channel: XYZ for each f on the scale 1.0 = 65280
    float lOffset;          ///< 16 L* units on the scale of the L* samples
    float lScale;           ///< from 116 L* units on that scale to f = 65280
};

/// Converts lines of pixels through a transform.
///
/// Each line of `source` is gathered if it is not packed, converted by the kernel for the
/// transform's kind and the two sample types, and scattered into the same line of `destination` if
/// that is not packed. The source's counts rule; without a progress callback, packed lines that
/// follow one another without a gap are converted together, with the same bytes as result.
///
/// The transform alone says how many channels a packed pixel has: nothing tells that a buffer holds
/// fewer, and three-channel pixels handed to a transform from CMYK are read beyond their end. 8-bit
/// samples of a connection space made from 65408 or more wrap to 0. lumoxa/lumoxa.hpp converts
/// without these limits, and checks both sides first.
///
/// @param xform        transform to apply; read only, may be in use on other threads
/// @param source       lineCount x pixelCount pixels of the transform's input channels
/// @param destination  as source, with the transform's output channels; disjoint from the source
///                     or, where pixels of both have one size, the same memory laid out alike
/// @param progress     optional; called on this thread with (start, 0), after line i of n with
///                     (progress, 100 i / n), at the end with (end, 100). A non-zero answer to a
///                     progress call leaves the remaining lines untouched; the answer to the start
///                     call changes nothing
/// @param user         handed to the callback
/// @return the callback's answer to the end call, or 0 without a callback. A sample type that is
///         neither 8-bit nor 16-bit converts nothing and returns just that. Before anything is
///         called or written: icErrInvalid for a null argument, a null channel that would be used,
///         a strided side whose channelCount is outside 1..32, or lines over 2^31 bytes apart;
///         icErrXformKind when the transform has no kernel for these sample types (16-bit to 8-bit
///         is for LUT transforms only, gray matrix/TRC transforms convert 16-bit samples, and 8-bit
///         gray to a 16-bit connection space); icErrNoMemory
LUMOXA_API int icEvaluate(icXform_t xform, const icPixelLayout_t* source,
                          const icPixelLayout_t* destination, icProgressCallback progress,
                          void* user);

/// Tone curves, then matrix: packed 8-bit device pixels to 16-bit connection-space pixels.
///
/// Three channels, or one when the state's inSpace is 'GRAY'. Single-precision; results are rounded
/// and clipped to 0..65535. In the gray form a first output sample (L* or X) that does not lie
/// below 65280 is not stored at all: the pixel's other samples and all later pixels of the run then
/// land one sample earlier.
///
/// @param state        a trcMatrix_t, read only
/// @param source       `pixels` pixels of 3 (gray: 1) samples
/// @param destination  receives `pixels` pixels of 3 samples
/// @param pixels       pixel count; below 1 does nothing
LUMOXA_API void icConvertTrcMatrix(const void* state, const unsigned char* source,
                                   unsigned short* destination, int pixels);

/// As the form for 8-bit samples, from 16-bit samples. The three-channel form divides the run over
/// all processor cores and returns when all are done; gray results are clipped to 0..65280.
LUMOXA_API void icConvertTrcMatrix(const void* state, const unsigned short* source,
                                   unsigned short* destination, int pixels);

/// Matrix, then inverse tone curves: packed 16-bit connection-space pixels to 16-bit device pixels.
///
/// With curves, results are stored without clipping: a table value above 65535 wraps around. In the
/// gray form (outSpace 'GRAY') L* of Lab pixels or Y of XYZ pixels is looked up and the matrix is
/// not used.
///
/// @param state        a trcMatrix_t, read only
/// @param source       `pixels` pixels of 3 samples
/// @param destination  receives `pixels` pixels of 3 (gray: 1) samples
/// @param pixels       pixel count; below 1 does nothing
LUMOXA_API void icConvertMatrixTrc(const void* state, const unsigned short* source,
                                   unsigned short* destination, int pixels);

/// Lab to XYZ (CIE 15, inverse of the L*a*b* formulas) on packed 16-bit pixels, over all cores.
///
/// @param state        a LabToXyz_t, read only
/// @param source       `pixels` pixels L*, a*, b*
/// @param destination  receives `pixels` pixels X, Y, Z; may be the source
/// @param pixels       pixel count; below 1 does nothing
LUMOXA_API void icConvertLabToXyz(const void* state, const unsigned short* source,
                                  unsigned short* destination, int pixels);

/// XYZ to Lab (CIE 15) on packed 16-bit pixels, over all cores. Channels brighter than the white
/// count as the white.
///
/// @param state        an XyzToLab_t, read only
/// @param source       `pixels` pixels X, Y, Z
/// @param destination  receives `pixels` pixels L*, a*, b*, L* 0..100 as 0..65280; may be the
/// source
/// @param pixels       pixel count; below 1 does nothing
LUMOXA_API void icConvertXYZToLab(const void* state, const unsigned short* source,
                                  unsigned short* destination, int pixels);
