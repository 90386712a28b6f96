// SPDX-License-Identifier: Apache-2.0
//
// The ground of the C interface: result codes, constants, handles, faults, the library itself.
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

// Rendering intents (ICC.1:2010, 7.2.15).
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

// What a progress call reports.
#define LMX_PROGRESS_START 1
#define LMX_PROGRESS_STEP 2
#define LMX_PROGRESS_END 3

/// A signature as a number, 'RGB ' as LMX_SIGNATURE('R', 'G', 'B', ' ').
#define LMX_SIGNATURE(a, b, c, d) \
    ((uint32_t)(a) << 24 | (uint32_t)(b) << 16 | (uint32_t)(c) << 8 | (uint32_t)(d))

#define LMX_CANCELLED 1    ///< the progress callback asked to stop; no failure
#define LMX_SAMPLES_F32 9  ///< 32-bit floating point, for lmx_image

// --- Handles and records ------------------------------------------------------------------------

/// A profile; released with `lmx_profile_free`. The same object as an `icProfile_t`.
typedef const struct icProfileInternal lmx_profile;

/// A transform; released with `lmx_transform_free`. The same object as an `icXform_t`.
typedef const struct icXformInternal lmx_transform;

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

/// What went wrong. The caller sets `size`; the rest is written on failure alone.
typedef struct lmx_fault {
    uint32_t size;          ///< sizeof(lmx_fault)
    int32_t code;           ///< LMX_ERR_...
    uint32_t tag;           ///< signature of the tag at fault, 0 for none
    int32_t profile_index;  ///< place of the profile at fault in the caller's chain, -1 for none
                            ///< and for the proof profile, which the sentence names
    int64_t offset;         ///< byte position in that profile, -1 for none
    char sentence[1000];    ///< UTF-8 with its NUL: names profile, tag and rule
} lmx_fault;

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

/// Releases a block that a function of this interface has handed out.
///
/// @param block  null does nothing
LUMOXA_API void lmx_free(void* block);

#ifdef __cplusplus
}
#endif
