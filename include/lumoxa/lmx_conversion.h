// SPDX-License-Identifier: Apache-2.0
//
// The accurate engine: from profiles to pixels in one object. What it computes, and how it chooses
// between tables and exact stages, `lmx_conversion_explain` says.
//
// Samples of device colours are 0..255, 0..65535 or 0..1, inks among them. Lab is coded as in ICC
// version 4: 8 and 16 bits with L* 0..100 as 0..255 and 0..65535, a* and b* -128..127 as 0..255 and
// 0..65535; floating-point samples are L*, a*, b* themselves. XYZ with 8 and 16 bits has
// 0..1 + 32767/32768 as 0..255 and 0..65535; floating-point samples have Y = 1 for white.
//
// Every function takes an optional `lmx_fault`, which tells what went wrong in one sentence. On
// failure nothing else has been written.
#pragma once

#include "lumoxa/lmx_profile.h"

#ifdef __cplusplus
extern "C" {
#endif

/// A ready conversion; released with `lmx_conversion_free`. Immutable: any number of threads may
/// use one at once.
typedef const struct lmx_conversion_record lmx_conversion;

/// Ready conversions kept for those who ask again; released with `lmx_conversion_cache_free`. Any
/// number of threads may use one at once.
typedef struct lmx_conversion_cache_record lmx_conversion_cache;

/// The tone of a print on a gray device of three channels (a profile of `lmx_make_gray_print`).
typedef struct lmx_gray_tone {
    uint32_t size;        ///< sizeof(lmx_gray_tone)
    float a, b;           ///< a* and b* of the print, -127..127; 0, 0 is neutral
    float fade;           ///< 0..1: how far the tone goes back to neutral at paper and black
    const float* points;  ///< split tone: point_count triples of L*, a*, b*, L* rising; added to
                          ///< a and b, lines between them; null for none. Excludes `fade`
    int32_t point_count;  ///< triples in `points`
    int32_t shaped;       ///< non-zero (default): perceptual prints have their tones shaped
    float shape;          ///< -100..100, contrast of the middle tones; 0 full, above it more
    uint32_t reserved;    ///< 0
} lmx_gray_tone;

/// How a conversion is made. Set by `lmx_options_init`, then changed where something else is meant.
typedef struct lmx_options {
    uint32_t size;            ///< sizeof(lmx_options)
    uint32_t intent;          ///< LMX_RELATIVE_COLORIMETRIC by default
    const uint32_t* intents;  ///< one for each step of the chain instead of `intent`, or null
    uint32_t intent_count;    ///< length of `intents`: profiles - 1, or 0
    int32_t black_point_compensation;  ///< 1 by default; ISO 18619, never for absolute colorimetry
    lmx_profile* proof;                ///< device to simulate, or null
    uint32_t proof_intent;             ///< from the simulated device to the destination
    int32_t mark_out_of_gamut;         ///< 0 by default
    float gamut_mark[3];               ///< sRGB 0..1 that marks it, {0.5, 0.5, 0.5} by default
    int32_t preserve_black;            ///< 0 by default
    float ink_limit;                   ///< total ink in percent, 0 (default) for none
    int32_t exact;                     ///< non-zero: every pixel stage by stage, no table
    const lmx_gray_tone* tone;         ///< for a gray print device as destination, or null
} lmx_options;

/// Pixels in memory. Strides are in bytes and of any sign: interleaved, planar, bottom-up, cropped.
typedef struct lmx_image {
    uint32_t size;           ///< sizeof(lmx_image)
    int32_t sample;          ///< LMX_SAMPLES_8, LMX_SAMPLES_16 or LMX_SAMPLES_F32
    void* data;              ///< first sample of the first pixel of the first row; any alignment
    int64_t width, height;   ///< 0..2^31 each
    int32_t channels;        ///< colours, then what is copied (alpha)
    uint32_t reserved;       ///< 0
    int64_t channel_stride;  ///< between the samples of a pixel; not read for one channel
    int64_t pixel_stride;    ///< between the pixels of a row; not read for width 1
    int64_t row_stride;      ///< between rows; not read for height 1
} lmx_image;

/// Progress of a run, on the thread that called it.
/// @param done  0..1
/// @return non-zero asks to stop; rows that are not converted yet stay as they are. At 1 all are
///         converted: the answer changes nothing
typedef int32_t (*lmx_run_progress)(double done, void* user);

/// How a run is done.
typedef struct lmx_run_options {
    uint32_t size;          ///< sizeof(lmx_run_options)
    int32_t threads;        ///< at most so many; 0 for one a processor core. None is started for
                            ///< less work than it is worth
    int32_t premultiplied;  ///< non-zero: colours are multiplied with the first extra channel
    uint32_t reserved;      ///< 0
    lmx_run_progress progress;  ///< or null
    void* user;                 ///< handed to it
} lmx_run_options;

/// Fills options with their defaults.
///
/// @param options  receives them, `size` included; null does nothing
LUMOXA_API void lmx_options_init(lmx_options* options);

/// Makes the conversion of a chain of profiles, from the device of the first to that of the last.
/// A chain of n profiles has n - 1 steps; a profile in the middle is entered by one step and left
/// by the next. A device link stands for a whole step, and may be a chain by itself.
///
/// @param chain    profiles; only read, not needed afterwards
/// @param count    their number, at least 2, or 1 for a device link
/// @param options  null for the defaults
/// @param out      receives the handle, released with `lmx_conversion_free`; null on failure
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for null arguments, unknown options and profiles that can't stand
///         where they stand; LMX_ERR_NO_TAG, LMX_ERR_TAG_TYPE, LMX_ERR_READ for a profile that
///         lacks what the step needs, or whose tag is faulty; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_conversion_create(lmx_profile* const* chain, int32_t count,
                                         const lmx_options* options, lmx_conversion** out,
                                         lmx_fault* fault);

/// Releases a conversion.
///
/// @param conversion  no longer used by any thread; null does nothing
LUMOXA_API void lmx_conversion_free(lmx_conversion* conversion);

/// Tells the channels on both sides of a conversion.
///
/// @param conversion  only read
/// @param in, out     optional; receive 1..15
/// @return 0; LMX_ERR_INVALID for a null conversion
LUMOXA_API int32_t lmx_conversion_channels(lmx_conversion* conversion, int32_t* in, int32_t* out);

/// Makes a cache of ready conversions, for programs that convert many pictures between few
/// profiles.
///
/// @param capacity  conversions kept, 1 or more, of up to some 5 MB each: the least recently used
/// go
/// @param out       receives the handle, released with `lmx_conversion_cache_free`; null on failure
/// @param fault     optional
/// @return 0; LMX_ERR_INVALID for a null argument or another capacity; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_conversion_cache_create(int32_t capacity, lmx_conversion_cache** out,
                                               lmx_fault* fault);

/// As `lmx_conversion_create`; what was asked for before, with equal options and profiles of equal
/// bytes, is not made again. Any number of threads may ask one cache at once.
///
/// @param cache  keeps what is made
/// @param out    receives a handle of the caller's own, released with `lmx_conversion_free`, which
///               outlives the cache; null on failure
LUMOXA_API int32_t lmx_conversion_cache_get(lmx_conversion_cache* cache, lmx_profile* const* chain,
                                            int32_t count, const lmx_options* options,
                                            lmx_conversion** out, lmx_fault* fault);

/// Releases a cache; conversions that it gave stay.
///
/// @param cache  no longer used by any thread; null does nothing
LUMOXA_API void lmx_conversion_cache_free(lmx_conversion_cache* cache);

/// Converts pixels. Both views have the same width and height; their channels are the conversion's
/// and equally many more, which are copied. Source and destination are the same memory with the
/// same strides, where pixels have one size, or disjoint.
///
/// @param conversion   only read
/// @param source       only read
/// @param destination  receives the pixels; nothing outside the view is touched
/// @param options      null for all cores, no premultiplied alpha and no progress
/// @param fault        optional
/// @return 0; LMX_CANCELLED; LMX_ERR_INVALID, before anything is written, for null arguments, views
///         that don't fit the conversion or one another, sizes above 2^31 and strides with which
///         samples overlap; LMX_ERR_NULL_DATA for a view without data; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_conversion_run(lmx_conversion* conversion, const lmx_image* source,
                                      const lmx_image* destination, const lmx_run_options* options,
                                      lmx_fault* fault);

/// Converts one pixel stage by stage, without a table.
///
/// @param conversion  only read
/// @param source      samples of the input channels, coded as floating-point pixels
/// @param destination receives those of the output channels
/// @param fault       optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_conversion_pixel(lmx_conversion* conversion, const float* source,
                                        float* destination, lmx_fault* fault);

/// Tells as JSON how the conversion works: its plan and why it was chosen, the stages with the
/// tags they come from, the size of a table and its measured error, black points, notes.
///
/// @param conversion  only read
/// @param json        receives a block with the text and its NUL, UTF-8, released with `lmx_free`
/// @param fault       optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_conversion_explain(lmx_conversion* conversion, char** json,
                                          lmx_fault* fault);

/// Makes a device link, ICC version 2.4, of a chain of profiles: its table is the one that the
/// conversion of that chain has, so both give the same pixels. Chains whose conversion has none
/// (matrix profiles, say) are tabulated for it.
///
/// @param chain, count, options  as `lmx_conversion_create`; both ends must be devices
/// @param precision  LMX_SAMPLES_16 or LMX_SAMPLES_8, of the table
/// @param out        receives the handle, released with `lmx_profile_free`; null on failure
/// @param fault      optional
/// @return 0; codes as `lmx_conversion_create`; LMX_ERR_INVALID also for another precision, a
///         connection space at an end and more inputs than a link can hold a table for
LUMOXA_API int32_t lmx_make_link(lmx_profile* const* chain, int32_t count,
                                 const lmx_options* options, int32_t precision, lmx_profile** out,
                                 lmx_fault* fault);

#ifdef __cplusplus
}
#endif
