// SPDX-License-Identifier: Apache-2.0
//
// The interface for C, and for languages that call C: profiles from memory, transforms, chains of
// them made into one, pixels, device links. It compiles alone as C99 or later and as C++17.
//
// Each function hands its arguments to one or a few `ic` functions and adds nothing to what they
// do. A program in C++ may use both on one object: the handles are the same.
//
// Calls have the C calling convention of the platform. Numbers and records have fixed sizes, the
// same for every compiler of a 64-bit machine: no bool, no long, no enumerations. Texts are bytes
// that end in NUL.
//
// Result codes: LMX_SUCCESS (0) or one of the LMX_ERR_ codes below. A null handle, record or buffer
// gives a code and does no harm; a handle that has been released, or one of another type, does.
// Nothing is thrown.
//
// Threads: there is no state between calls and no start-up. Any number of threads may convert
// through one transform at once, or read one profile that is held in memory. Editing a profile, and
// taking and dropping holders of a transform, belong to one thread at a time.
#pragma once

#include <stdint.h>

#include "lumoxa/export.h"

#ifdef __cplusplus
extern "C" {
#endif

// --- Constants ----------------------------------------------------------------------------------

/// Version of this interface. It goes up when a function or a record changes so that a program
/// built before would misread it; functions that are added leave it as it is.
#define LMX_ABI_VERSION 1

// Result codes.
#define LMX_SUCCESS 0                ///< the call did what it was asked
#define LMX_ERR_INVALID 503          ///< null or invalid handle, record or argument
#define LMX_ERR_TAG_TYPE 504         ///< a tag holds another type, or declares the impossible
#define LMX_ERR_TEXT_TYPE 506        ///< a text tag of a type that the text readers don't know
#define LMX_ERR_XFORM_KIND 507       ///< a transform of a kind the operation doesn't handle
#define LMX_ERR_BUFFER_SIZE 509      ///< the caller's buffer is too small
#define LMX_ERR_OPEN 511             ///< a profile file can't be opened for reading
#define LMX_ERR_READ 512             ///< fewer bytes are there than were declared or asked for
#define LMX_ERR_WRITE 513            ///< a file can't be opened for writing or written whole
#define LMX_ERR_NO_MEMORY 515        ///< an allocation failed
#define LMX_ERR_NO_TAG 519           ///< the tag asked for is not in the tag table
#define LMX_ERR_NULL_DATA 520        ///< a null pointer was given where bytes were expected
#define LMX_ERR_PROFILES_DIFFER 530  ///< both are profiles, but their bytes differ

// Rendering intents (ICC.1, 7.2.15).
#define LMX_PERCEPTUAL 0u
#define LMX_RELATIVE_COLORIMETRIC 1u
#define LMX_SATURATION 2u
#define LMX_ABSOLUTE_COLORIMETRIC 3u

// Directions of a transform.
#define LMX_DEVICE_TO_PCS 1u  ///< device to connection space (the A2B tags)
#define LMX_PCS_TO_DEVICE 2u  ///< connection space to device (the B2A tags)
#define LMX_GAMUT_TEST 3u     ///< connection space to an out-of-gamut measure (the 'gamt' tag)
#define LMX_COMBINED 4u       ///< made by `lmx_combine`; not a direction to ask for

// Options of `lmx_combine`.
#define LMX_COMBINE_COLORIMETRIC 1      ///< no display black lift and no removal of it
#define LMX_COMBINE_KEEP_PAPER_WHITE 2  ///< no paper-white adjustment

// Sample types.
#define LMX_SAMPLES_8 1   ///< unsigned 8-bit
#define LMX_SAMPLES_16 5  ///< unsigned 16-bit, byte order of the machine

// What a progress callback is told.
#define LMX_PROGRESS_START 1
#define LMX_PROGRESS_STEP 2
#define LMX_PROGRESS_END 3

/// A signature as a number, 'RGB ' as LMX_SIGNATURE('R', 'G', 'B', ' ').
#define LMX_SIGNATURE(a, b, c, d) \
    ((uint32_t)(a) << 24 | (uint32_t)(b) << 16 | (uint32_t)(c) << 8 | (uint32_t)(d))

// --- Handles and records ------------------------------------------------------------------------

/// A profile; released with `lmx_profile_free`. The same object as an `icProfile_t`.
typedef const struct icProfileInternal lmx_profile;

/// A transform; released with `lmx_transform_free`. The same object as an `icXform_t`.
typedef const struct icXformInternal lmx_transform;

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

/// A profile header with numbers in the byte order of the machine, 128 bytes. The same layout as
/// icHeader.
typedef struct lmx_header {
    uint32_t size, cmm, version, device_class, color_space, pcs;
    uint16_t year, month, day, hours, minutes, seconds;
    uint32_t magic;  ///< 'acsp'
    uint32_t platform, flags, manufacturer, model;
    uint64_t attributes;
    uint32_t rendering_intent;
    int32_t illuminant[3];  ///< X, Y, Z in s15Fixed16: 1.0 = 65536
    uint32_t creator;       ///< in file byte order, most significant byte first
    uint8_t reserved[44];   ///< begins with the profile identifier; not interpreted
} lmx_header;

/// Progress of a long operation, called on the thread that called the operation. It must not let
/// an exception out.
///
/// @param state    LMX_PROGRESS_START, LMX_PROGRESS_STEP or LMX_PROGRESS_END
/// @param percent  0 at the start, 100 at the end
/// @param user     as handed to the operation
/// @return non-zero at a step asks the operation to stop
typedef int32_t (*lmx_progress)(int32_t state, int32_t percent, void* user);

// --- The library --------------------------------------------------------------------------------

/// Tells the version of the interface that the library was built with. A program that finds another
/// number than the LMX_ABI_VERSION it was compiled with must not call anything else.
///
/// @return LMX_ABI_VERSION as the library knows it
LUMOXA_API int32_t lmx_abi_version(void);

/// Tells the version of the library.
///
/// @return "2.1.0" or the like, ASCII; belongs to the library, which never changes or releases it
LUMOXA_API const char* lmx_version(void);

/// Writes the text of a result code: "Profile Processor Error: " followed by a description, or by
/// the code's number where the library has no description.
///
/// @param code    any number
/// @param buffer  receives the text, ASCII with its NUL
/// @param size    bytes in `buffer`, best 100 or more
/// @return 0; LMX_ERR_BUFFER_SIZE when the text was cut to fit, or `size` is below 1 or leaves no
///         room for any of it; LMX_ERR_INVALID for a null buffer
LUMOXA_API int32_t lmx_error_text(int32_t code, char* buffer, int32_t size);

// --- Profiles -----------------------------------------------------------------------------------

/// Makes a profile from bytes in memory, which may come from anywhere: nothing outside them is
/// read. What is needed is copied, so they may be released after the call.
///
/// @param image   `length` bytes that may hold a profile
/// @param length  in bytes; the size field of the header is not consulted
/// @param out     receives the handle, released with `lmx_profile_free`; null on every failure
/// @return 0; LMX_ERR_READ when the header, the tag table or a tag does not fit into the bytes;
///         LMX_ERR_NULL_DATA for a null image; LMX_ERR_INVALID when the magic is not 'acsp' or
///         `out` is null; LMX_ERR_NO_MEMORY, also for a profile without tags
LUMOXA_API int32_t lmx_profile_load(const void* image, uint64_t length, lmx_profile** out);

/// Makes a new profile in memory: an ICC version 2.0 display profile, RGB to XYZ, created now, with
/// the D50 illuminant and one tag, a copyright text ('cprt'). What it becomes is up to
/// `lmx_profile_set_header`, `lmx_profile_store` and `lmx_profile_add_tag`.
///
/// @param out  receives the handle, released with `lmx_profile_free`; null on failure
/// @return 0; LMX_ERR_NO_MEMORY; LMX_ERR_INVALID for a null `out`
LUMOXA_API int32_t lmx_profile_create(lmx_profile** out);

/// Releases a profile with everything it holds. Transforms made from it stay valid.
///
/// @param profile  no longer used by any thread; null does nothing
LUMOXA_API void lmx_profile_free(lmx_profile* profile);

/// Reads the description of a profile ('desc') as a text of single bytes, cut to fit: ASCII, and
/// Latin-1 where a version 4 profile has such characters; others become '?'.
///
/// @param profile  only read
/// @param buffer   receives the text with its NUL; nothing is written on failure
/// @param size     of the buffer in bytes
/// @return 0; LMX_ERR_INVALID for a null profile or buffer; LMX_ERR_BUFFER_SIZE for a size below 1;
///         LMX_ERR_NO_TAG; LMX_ERR_TEXT_TYPE for a tag of another type or one that contradicts
///         itself; LMX_ERR_READ when the tag is shorter than its type; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_description(lmx_profile* profile, char* buffer, int32_t size);

/// Copies the header of a profile.
///
/// @param profile  only read
/// @param out      receives the header; left alone on failure
/// @return 0; LMX_ERR_INVALID for a null argument
LUMOXA_API int32_t lmx_profile_get_header(lmx_profile* profile, lmx_header* out);

/// Replaces the header of a profile. A device link has the device class 'link', and as
/// `color_space` and `pcs` the spaces of its source and destination pixels.
///
/// @param profile  edited: one thread at a time
/// @param header   best one of `lmx_profile_get_header` with some fields changed; `size` is worked
///                 out anew when the profile is saved
/// @return 0; LMX_ERR_INVALID for a null argument or a magic other than 'acsp': nothing is changed
LUMOXA_API int32_t lmx_profile_set_header(lmx_profile* profile, const lmx_header* header);

/// Stores a description ('desc') as a textDescriptionType, the form of versions before 4. It
/// replaces the one that is there.
///
/// @param profile  edited: one thread at a time
/// @param text     ASCII with its NUL; bytes are stored as they are
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_MEMORY. On failure the profile is as
///         it was
LUMOXA_API int32_t lmx_profile_set_description(lmx_profile* profile, const char* text);

/// Stores a tag as it stands in a file: type signature, four zero bytes, body, all most significant
/// byte first. A tag of that signature is replaced, the first where several have it. A text such as
/// 'cprt' is "text", four zero bytes and ASCII with its NUL.
///
/// @param profile    edited: one thread at a time
/// @param signature  such as LMX_SIGNATURE('c', 'p', 'r', 't')
/// @param bytes      copied, and stay the caller's; null only when `size` is 0
/// @param size       in bytes
/// @return 0; LMX_ERR_INVALID for a null profile; LMX_ERR_NULL_DATA; LMX_ERR_NO_MEMORY. On failure
///         the profile is as it was
LUMOXA_API int32_t lmx_profile_add_tag(lmx_profile* profile, uint32_t signature, const void* bytes,
                                       uint32_t size);

/// Stores a transform of kind 'mft1' or 'mft2', such as every result of `lmx_combine`, as a tag:
/// 'A2B0', 'A2B1', 'A2B2' for LMX_DEVICE_TO_PCS and intents 0, 1, 2 (3 counts as 1), 'B2A0' and so
/// on for LMX_PCS_TO_DEVICE, 'gamt' for LMX_GAMUT_TEST. A tag of that signature is replaced. A
/// device link is stored with LMX_PERCEPTUAL and LMX_DEVICE_TO_PCS, whatever its intent is.
///
/// @param profile    edited: one thread at a time
/// @param intent     0..3
/// @param direction  1..3, also for a combination
/// @param transform  only read, and not needed afterwards
/// @return 0; LMX_ERR_XFORM_KIND for a null transform or one of another kind; LMX_ERR_INVALID for a
///         null profile and for intents and directions outside those; LMX_ERR_NO_MEMORY. On failure
///         the profile is as it was
LUMOXA_API int32_t lmx_profile_store(lmx_profile* profile, uint32_t intent, uint32_t direction,
                                     lmx_transform* transform);

/// Writes a profile to a file, replacing what the file holds. The profile stays as it is: a copy of
/// it is what is written (`icProfileCopy`, `icProfileSaveProfile`).
///
/// @param profile  only read
/// @param path     in the encoding that the `fopen` of the library's C runtime takes: on Windows
///                 the code page of the process, elsewhere bytes as they are. A partial file may
///                 stay behind on failure
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_WRITE when the file can't be opened or
///         written whole, or would be larger than 4 GiB; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_save(lmx_profile* profile, const char* path);

// --- Transforms ---------------------------------------------------------------------------------

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
/// @param failing_link  optional; receives i + 1 when transform i does not fit transform i + 1
/// @param progress      optional. A non-zero answer at a step stops the work: the end call follows,
///                      its answer is returned (LMX_ERR_INVALID where that is 0), and nothing is
///                      made
/// @param user          handed to the callback
/// @return 0; LMX_ERR_XFORM_KIND when two neighbours do not fit or a transform can't be a stage;
///         LMX_ERR_INVALID for a null argument, a null handle in the chain, a count below 1 or
///         unknown options; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_combine(int32_t count, lmx_transform* const* chain, int32_t options,
                               lmx_transform** out, int32_t* failing_link, lmx_progress progress,
                               void* user);

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
