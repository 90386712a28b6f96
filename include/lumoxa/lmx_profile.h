// SPDX-License-Identifier: Apache-2.0
//
// Profiles for C: loading, reading, editing, saving, and those of built-in spaces.
#pragma once

#include "lumoxa/lmx_base.h"

#ifdef __cplusplus
extern "C" {
#endif

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

/// As `lmx_profile_load`, with a fault that names what in the bytes is wrong.
///
/// @param bytes  `size` bytes that may hold a profile; copied
/// @param size   in bytes
/// @param out    receives the handle, released with `lmx_profile_free`; null on failure
/// @param fault  optional
/// @return 0; codes as `lmx_profile_load`
LUMOXA_API int32_t lmx_profile_from_bytes(const void* bytes, uint64_t size, lmx_profile** out,
                                          lmx_fault* fault);

/// Makes the profile of a colour space that everybody knows: "sRGB" (IEC 61966-2-1), "AdobeRGB"
/// (Adobe RGB (1998)), "DisplayP3", "Rec2020" (ITU-R BT.2020), "ProPhotoRGB" (ISO 22028-2), "gray"
/// (sRGB's curve), "gray-2.2", "Lab", "XYZ". Version 4, adapted to D50 with the Bradford transform.
///
/// @param name   ASCII, in capitals or not
/// @param out    receives the handle, released with `lmx_profile_free`; null on failure
/// @param fault  optional
/// @return 0; LMX_ERR_INVALID for another name or a null argument; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_named(const char* name, lmx_profile** out, lmx_fault* fault);

/// Copies the bytes of a profile: those it was loaded from, or, where it was made or edited, those
/// that `lmx_profile_save` would write.
///
/// @param profile  only read
/// @param bytes    receives a block, released with `lmx_free`; null on failure
/// @param size     receives its size
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_READ, LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_bytes(lmx_profile* profile, uint8_t** bytes, uint64_t* size,
                                     lmx_fault* fault);

/// Reads the description of a profile ('desc') as UTF-8: English where there are several.
///
/// @param profile  only read
/// @param text     receives a block with the text and its NUL, released with `lmx_free`; null on
///                 failure. Empty for a profile without a description
/// @param fault    optional
/// @return 0; LMX_ERR_INVALID for a null argument; LMX_ERR_NO_MEMORY
LUMOXA_API int32_t lmx_profile_text(lmx_profile* profile, char** text, lmx_fault* fault);

/// Tells how many channels the device side of a profile has: those of its colour space, and 3 for
/// a gray print device.
///
/// @param profile  only read
/// @return 1..15; 0 for a null profile or a colour space that ICC.1 doesn't list
LUMOXA_API int32_t lmx_profile_channels(lmx_profile* profile);

#ifdef __cplusplus
}
#endif
