// SPDX-License-Identifier: Apache-2.0
//
// Tags of a profile: reading, replacing and filling them, texts, and saving.
//
// A profile can be edited when its tags are in memory: loaded whole, loaded from an image, copied,
// or created. One thread at a time edits a profile, and none reads it meanwhile.
#pragma once

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// One tag with its data.
struct icTagValue_t {
    uint32_t signature;  ///< host order
    uint32_t type;       ///< of the data, host order
    void* data;          ///< type signature, four reserved bytes, body
    uint32_t size;       ///< bytes at `data`
};

/// Start of a multiLocalizedUnicodeType tag ('mluc', ICC.1:2010, 10.13). `count` records of 12
/// bytes follow: language and country (16 bits each), length and offset of the text in bytes (32
/// bits each), the offset counting from the start of the tag. Texts are UTF-16, big-endian.
struct icMultiLocalizedUnicodeType {
    uint32_t sig;  ///< host order, as in every tag copy
    uint8_t reserved[4];
    uint32_t count;       ///< file byte order, as all that follows
    uint32_t recordSize;  ///< 12
};

// --- Reading and editing ------------------------------------------------------------------------

/// Copies a tag out of a profile. The data is as `icReadTag` gives it: type signature in host
/// order, body as in the file, followed by zeros where the tag is shorter than 8 bytes.
///
/// @param signature  where several entries have it, the first one counts
/// @param value      receives the tag; release it with `icTagFree`. Left alone by icErrInvalid and
///                   icErrNoTag; its `data` is null after other failures.
/// @return 0; icErrInvalid when `profile` is null or no profile, or `value` is null; icErrNoTag;
///         icErrRead when a file-backed profile's file is too short for the tag; icErrNoMemory
LUMOXA_API int icTagGetById(icProfile_t profile, icTagSignature signature, icTagValue_t* value);

/// Releases the data of a tag value and sets it to null.
///
/// @param value  may be null
/// @return 0
LUMOXA_API int icTagFree(icTagValue_t* value);

/// Stores a tag whose type signature, the first four bytes of the data, is in host order, as
/// `icTagGetById` gives it; the body is in file byte order. A tag of the same signature is replaced
/// (the first, where several have it), otherwise the tag is added at the end.
///
/// The header's size field follows roughly: the data's size, and 12 for an entry that is added.
///
/// @param profile  an editable profile; on failure it is as it was
/// @param value    signature, data and size are read; the data is copied and stays the caller's
/// @return 0; icErrInvalid when `profile` is null, no profile or file-backed, or `value` is null or
///         shorter than a type signature; icErrNullData for null data; icErrNoMemory
LUMOXA_API int icTagSet(icProfile_t profile, const icTagValue_t* value);

/// As `icTagSet`, for a tag that is in file byte order throughout, type signature included.
///
/// @param bytes  `size` bytes; null only when `size` is 0
/// @return as `icTagSet`; any size is taken
LUMOXA_API int icTagAdd(icProfile_t profile, icTagSignature signature, unsigned int size,
                        const void* bytes);

/// Removes a tag, the first of that signature. The header's size field goes down by 12 and the
/// size of the data.
///
/// @param profile  an editable profile
/// @return 0; icErrInvalid when `profile` is null, no profile or file-backed; icErrNoTag
LUMOXA_API int icTagRemove(icProfile_t profile, icTagSignature signature);

// --- Filling ------------------------------------------------------------------------------------
//
// These make the data of a tag in file byte order, ready for `icTagAdd`, as a block that the caller
// releases with `icFree`. They return its size and not a result code.

/// Makes an 'XYZ ' tag (XYZType of ICC.1:2010), such as a white point.
///
/// @param X, Y, Z  1.0 is the luminance of a perfect white; stored as s15Fixed16: half a
///                 step is added and the fraction dropped
/// @param tag      receives the block; null on failure
/// @return 20, the size in bytes; 0 for a null `tag` or without memory
LUMOXA_API int icFillWhitePoint(float X, float Y, float Z, icTagBase** tag);

/// Makes a 'curv' tag (ICC.1:2010, 10.5) with two zero bytes behind its entries.
///
/// @param entries  `n` values: none is the identity, one is a gamma in u8Fixed8 (0x0233 is 2.2),
///                 more are a table from 0 to 65535; may be null when `n` is 0
/// @param tag      receives the block; null on failure
/// @return n x 2 + 14, the size in bytes; 0 for n below 0, null entries, a null `tag` or without
///         memory
LUMOXA_API int icFillTrc(const unsigned short* entries, int n, icTagBase** tag);

/// Makes a textDescriptionType tag ('desc', ICC.1:2001-04, 6.5.17) of an ASCII text, with empty
/// Unicode and ScriptCode parts.
///
/// @param text  NUL-terminated; bytes are stored as they are
/// @param tag   receives the block; null on failure
/// @return length of the text + 94, the size in bytes; 0 for a null text, a null `tag` or without
///         memory
LUMOXA_API int icFillProfileDescription(const char* text, icTagBase** tag);

// --- Saving -------------------------------------------------------------------------------------

/// Makes a profile in memory with the header and the tags of another one. It can be edited,
/// whatever the other one is, and saved, after which the other one is still in use.
///
/// @param profile  any profile, also a file-backed one; only read, its file position moves
/// @param copy     receives the handle, released with `icProfileFree`; null on failure
/// @return 0; icErrInvalid for a null argument or when `profile` is no profile; icErrRead when a
///         file-backed profile's file is too short for a tag; icErrNoMemory
LUMOXA_API int icProfileCopy(icProfile_t profile, icProfile_t* copy);

/// Writes a profile to a file, replacing what the file holds. Save a copy (`icProfileCopy`) to go
/// on with the profile: this call leaves the handle's header in file byte order, so that it no
/// longer counts as a profile and is to be released. A second save of the same handle is
/// icErrInvalid.
///
/// Each tag starts at a multiple of four bytes, in the order of the table; tags with the same bytes
/// are written once. The size field becomes the end of the last tag, rounded up to a multiple of
/// four; the file itself ends with the tag, up to three bytes earlier.
///
/// @param profile  an editable profile; on failure it is as it was, and can be saved again
/// @param path     as for `icOpenProfile`, so a file with another name is saved under a plain one
///                 and renamed; a partial file stays behind on icErrWrite, an empty one on
///                 icErrNoMemory
/// @return 0; icErrInvalid when an argument is null, or `profile` is no profile or file-backed;
///         icErrWrite when the file can't be opened, positioned, written whole or closed, or would
///         be larger than 4 GiB; icErrNoMemory
LUMOXA_API int icProfileSaveProfile(icProfile_t profile, const char* path);

// --- Texts --------------------------------------------------------------------------------------

/// Converts the texts of a multi-localized tag to single-byte strings: Latin-1 characters keep
/// their code, others become '?'. Languages and countries are not looked at.
///
/// The tag is trusted: its records say how much of it is read. `icGetDescription` and
/// `icGetCopyright` check it first.
///
/// @param tag    a tag copy as `icTagGetById` gives it
/// @param count  receives the number of texts; 0 on failure
/// @param texts  receives one block, released with one `icFree`, which begins with `count` pointers
///               to NUL-terminated texts inside it; null on failure. A tag without records gives an
///               empty block.
/// @return the number of texts; 0 also on failure: a record size other than 12, a null argument, or
///         no memory
LUMOXA_API int icGetMLUFromTag(const icMultiLocalizedUnicodeType* tag, int* count, char*** texts);

/// Reads the description of a profile ('desc') as a NUL-terminated single-byte text, cut to fit.
///
/// The ASCII part of a textDescriptionType, or the first text of a multi-localized tag, in which
/// characters beyond Latin-1 become '?'. A textDescriptionType is cut when the count that it
/// states, NUL included, exceeds `size`.
///
/// @param buffer  receives the text; its last byte becomes NUL as well where the text is cut, and
///                always for a multi-localized tag
/// @param size    of the buffer in bytes
/// @return 0; icErrInvalid when `profile` is null or no profile, or `buffer` is null;
///         icErrBufferSize for a size below 1; icErrNoTag; icErrTextType for a tag of another type,
///         a multi-localized one without records or with records that are not 12 bytes long or do
///         not fit the tag, or a description too short for its count; icErrRead when the tag is
///         shorter than its type or can't be read; icErrNoMemory. On failure nothing is written.
LUMOXA_API int icGetDescription(icProfile_t profile, char* buffer, int size);

/// Reads the copyright of a profile ('cprt') as `icGetDescription` does its description, where the
/// single-byte type is textType ('text'), cut when it has `size` characters or more.
LUMOXA_API int icGetCopyright(icProfile_t profile, char* buffer, int size);

static_assert(sizeof(icMultiLocalizedUnicodeType) == 16, "fixed by the file format");
