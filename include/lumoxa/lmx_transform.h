// SPDX-License-Identifier: Apache-2.0
//
// Transforms and chains of them for C, by the functions of C++ that programs with chains of their
// own call (xform.h, combine.h, evaluate.h): `lmx_conversion.h` is what others want.
#pragma once

#include "lumoxa/lmx_profile.h"

#ifdef __cplusplus
extern "C" {
#endif

/// What a transform converts, 28 bytes. The same layout as icXformDesc_t.
typedef struct lmx_transform_info {
    uint32_t kind;    ///< signature: 'mft1', 'mft2', 'mAB ', 'mBA ', 'TrcM', 'MatT', ...; 0 for a
                      ///< transform without a conversion
    uint32_t intent;  ///< the rendering intent asked for
    uint32_t direction;     ///< the direction asked for, or LMX_COMBINED
    uint32_t in_space;      ///< colour space of the source pixels, a signature
    uint32_t out_space;     ///< colour space of the destination pixels, a signature
    uint32_t in_channels;   ///< samples of a source pixel
    uint32_t out_channels;  ///< samples of a destination pixel
} lmx_transform_info;

/// One side of a conversion: a rectangle of pixels in memory that the caller owns. 288 bytes: seven
/// numbers, four bytes that count for nothing, 32 pointers. The same layout as icPixelLayout_t.
typedef struct lmx_pixel_layout {
    int32_t data_type;       ///< LMX_SAMPLES_8 or LMX_SAMPLES_16
    int32_t contiguous;      ///< non-zero: lines of packed, interleaved pixels from channel_data[0]
    int32_t pixel_count;     ///< pixels of a line
    int32_t line_count;      ///< lines
    int32_t pixel_step;      ///< bytes between samples of one channel; used when not contiguous
    int32_t line_step;       ///< bytes between line starts; may be negative
    int32_t channel_count;   ///< channels of a pixel, 1..32
    void* channel_data[32];  ///< line 0 of each channel; only [0] counts when contiguous, and is
                             ///< then aligned to the samples
} lmx_pixel_layout;

/// Makes the transform of a profile for a rendering intent and a direction. `icXformGet` tells
/// which of the profile's tags it is made from; gray profiles of patches get a neutral tone.
///
/// @param profile    only read, and not needed afterwards
/// @param intent     LMX_PERCEPTUAL to LMX_ABSOLUTE_COLORIMETRIC
/// @param direction  LMX_DEVICE_TO_PCS, LMX_PCS_TO_DEVICE or LMX_GAMUT_TEST; for another one the
///                   transform converts nothing (kind 0)
/// @param out        receives the handle, released with `lmx_transform_free`; null on every failure
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_TAG when the profile has no tags to
///         make it from; LMX_ERR_TAG_TYPE for a tag of the wrong type or one that declares the
///         impossible; LMX_ERR_READ when a tag holds fewer bytes than it declares;
///         LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_transform_get(lmx_profile* profile, uint32_t intent, uint32_t direction,
                                     lmx_transform** out);

/// Adds a holder to a transform, which then takes one more `lmx_transform_free` to release. Not
/// atomic: holders are taken and dropped by one thread at a time.
///
/// @param transform  null does nothing
LUMOXA_API void lmx_transform_hold(lmx_transform* transform);

/// Drops one holder of a transform; the last one releases it with its tables. Not atomic.
///
/// @param transform  not to be used again by this holder; null does nothing
LUMOXA_API void lmx_transform_free(lmx_transform* transform);

/// Describes a transform.
///
/// @param transform  only read
/// @param out        receives the seven fields; left alone on failure
/// @return 0; LMX_ERR_INVALID for a null argument
LUMOXA_API int32_t lmx_transform_describe(lmx_transform* transform, lmx_transform_info* out);

/// Combines a chain of transforms into one of kind 'mft2', such as an RGB device to the connection
/// space and on to CMYK. Neighbours fit when their channel counts agree and their spaces are the
/// same, or both are connection spaces. `icCombineXforms` tells how.
///
/// @param count         transforms in the chain, at least 1
/// @param chain         their handles, first stage first; only read, and not needed afterwards
/// @param options       sum of LMX_COMBINE_COLORIMETRIC and LMX_COMBINE_KEEP_PAPER_WHITE, or 0
/// @param out           receives the handle, released with `lmx_transform_free`; null on every
///                      failure
/// @param failing_transform  optional; receives i + 1 when transform i does not fit transform i + 1
/// @param progress      optional. A non-zero answer at a step stops the work: the end call follows,
///                      its answer is returned (LMX_ERR_INVALID where that is 0), and nothing is
///                      made
/// @param user          handed to the callback
/// @return 0; LMX_ERR_XFORM_KIND when two neighbours do not fit or a transform can't be a stage;
///         LMX_ERR_INVALID for a null argument, a null handle in the chain, a count below 1 or
///         unknown options; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_combine(int32_t count, lmx_transform* const* chain, int32_t options,
                               lmx_transform** out, int32_t* failing_transform,
                               lmx_progress progress, void* user);

// --- Pixels -------------------------------------------------------------------------------------
//
// Samples are 0..255 or 0..65535. Of connection-space samples, XYZ has 1.0 as 32768; Lab has L*
// 0..100 as 0..65280 and a*, b* as 32768 + 256 x value; with 8 bits, a 256th of that.

/// Converts lines of pixels. The source's counts rule both sides. The work is divided over the
/// processor cores, and done when the call returns.
///
/// @param transform    only read; may be in use on other threads
/// @param source       line_count x pixel_count pixels of the transform's input channels
/// @param destination  as source, with the transform's output channels; other memory or, where
///                     pixels of both have one size, the same memory laid out alike
/// @param progress     optional; called after each line. A non-zero answer at a step leaves the
///                     remaining lines untouched
/// @param user         handed to the callback
/// @return the callback's answer to the end call, or 0 without a callback, also for an unknown
///         sample type, with which nothing is converted. Before anything is called or written:
///         LMX_ERR_INVALID for a null argument or a null channel that would be used, a strided side
///         whose channel_count is outside 1..32, or lines over 2^31 bytes apart; LMX_ERR_XFORM_KIND
///         when the transform can't convert between these sample types, as from 16 to 8 bits for
///         some kinds, or at all; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_evaluate(lmx_transform* transform, const lmx_pixel_layout* source,
                                const lmx_pixel_layout* destination, lmx_progress progress,
                                void* user);

/// Converts one run of packed, interleaved pixels: `lmx_evaluate` for the everyday case.
///
/// @param transform         only read; may be in use on other threads
/// @param source            pixels x in_channels samples, aligned to them
/// @param source_type       LMX_SAMPLES_8 or LMX_SAMPLES_16
/// @param destination       receives pixels x out_channels samples; may be the source where pixels
///                          of both have one size
/// @param destination_type  LMX_SAMPLES_8 or LMX_SAMPLES_16
/// @param pixels            pixel count; below 1 does nothing
/// @return as `lmx_evaluate` without a callback
LUMOXA_API int32_t lmx_evaluate_packed(lmx_transform* transform, const void* source,
                                       int32_t source_type, void* destination,
                                       int32_t destination_type, int32_t pixels);

#ifdef __cplusplus
}
#endif
