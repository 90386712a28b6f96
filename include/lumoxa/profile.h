// SPDX-License-Identifier: Apache-2.0
//
// ICC profiles: reading their bytes, and profile objects.
//
// A profile is a big-endian file (ICC.1:2010, 7): a 128-byte header, a table of tags, the tags'
// data. Headers and tag tables are handed out in host byte order. Of a tag's data only the type
// signature is: the body stays as in the file, and whoever uses a field converts it.
//
// The functions keep nothing between calls. Two threads may call any of them at once as long as
// neither writes what the other uses; reading from a FILE moves its position, which is a write.
//
// On Windows a FILE belongs to the C runtime that opened it: a program with another runtime than
// the library's uses only the streams of `icOpenProfile`, and those only here.
#pragma once

#include <cstddef>
#include <cstdio>

#include "lumoxa/export.h"
#include "lumoxa/types.h"

// --- Reading bytes ------------------------------------------------------------------------------

/// Reads the header of a profile image in memory (ICC.1:2010, 7.2).
///
/// Every field becomes a host-order number, except two: `creator` keeps the byte order of the file
/// (searches by creator compare against that form), and `reserved`, which begins with the profile
/// identifier of version 4, is carried untouched. The magic is not checked; a profile has 'acsp'.
///
/// @param image  at least 128 bytes, at any address
/// @param out    receives the header; left alone on failure
/// @return 0; icErrNullData for a null image; icErrInvalid for a null `out`
LUMOXA_API int icReadHeader(const void* image, icHeader* out);

/// Reads the header of a profile from a stream at its current position, and leaves the stream just
/// after it. The fields are as in the other form.
///
/// @param stream  open for binary reading, positioned at the start of the profile
/// @param out     receives the header; left alone on failure
/// @return 0; icErrRead when fewer than 128 bytes are left; icErrInvalid for a null argument
LUMOXA_API int icReadHeader(FILE* stream, icHeader* out);

/// Reads the tag table of a profile image in memory (ICC.1:2010, 7.3). Locations are offsets from
/// the start of the image. Neither offsets and sizes nor repeated signatures are checked.
///
/// @param image  a profile whose table is whole; how many bytes are read follows from its tag
///               count, so use `icProfileLoadFromBuffer` with a length for bytes you don't trust
/// @param out    receives the table, a block that the caller releases with `icFree`
/// @return 0; icErrNullData for a null image; icErrInvalid for a null `out`; icErrNoMemory when
///         the table can't be allocated, for a tag count of 0, and for one whose table would not
///         fit a profile of 4 GiB. `out` is null when the allocation failed and is left alone by
///         the other failures.
LUMOXA_API int icReadTagTable(const void* image, icTagList_safe64bit** out);

/// Reads the tag table of a profile from a stream at its current position, which must be just after
/// the header, and leaves the stream after the table. No more memory is used than bytes arrive, so
/// a false tag count does no harm.
///
/// @param stream  open for binary reading, positioned at the tag count
/// @param out     receives the table, a block that the caller releases with `icFree`; null on
/// failure
/// @return 0; icErrRead when the stream ends inside the table or the table would not fit a profile
///         of 4 GiB; icErrNoMemory for a tag count of 0 or a failed allocation; icErrInvalid for a
///         null argument
LUMOXA_API int icReadTagTable(FILE* stream, icTagList_safe64bit** out);

/// Copies the data of a tag that is held in memory: `entry->location` is the address of its bytes.
///
/// The copy has the type signature in host order and everything after it as in the file. It is
/// never shorter than an icTagBase: a tag below 8 bytes is followed by zeros.
///
/// @param unused  not read; stands where the other form takes a stream
/// @param entry   table entry of the tag; `size` bytes are read at its location
/// @param out     receives the copy, which the caller releases with `icFree`; null on failure
/// @return 0; icErrNullData when the location is null; icErrNoMemory; icErrInvalid for a null
///         `entry` or `out`
LUMOXA_API int icReadTag(const void* unused, const icTag_safe64bit* entry, icTagBase** out);

/// Reads the data of a tag from a stream: `entry->location` is an offset from the stream's start.
/// The copy is as in the other form. Nothing is allocated for a tag that the file is too short for.
///
/// @param stream  open for binary reading and seekable; left after the tag, or anywhere on failure
/// @param entry   table entry of the tag. Of the location the lower 32 bits are used, as a signed
///                number: an offset of 2 GiB or more can't be read, on any platform.
/// @param out     receives the copy, which the caller releases with `icFree`; null on failure
/// @return 0; icErrRead when the stream can't be positioned there or ends before the tag does;
///         icErrNoMemory; icErrInvalid for a null argument
LUMOXA_API int icReadTag(FILE* stream, const icTag_safe64bit* entry, icTagBase** out);

/// Copies the data of a tag out of a profile image: `entry->location` is an offset into the image.
/// The copy is as that of `icReadTag`. The offset and the size are trusted.
///
/// @param image  a whole profile
/// @param entry  table entry of the tag, as `icReadTagTable` gave it
/// @param out    receives the copy, which the caller releases with `icFree`; null on failure
/// @return 0; icErrNullData for a null image; icErrNoMemory; icErrInvalid for a null `entry` or
///         `out`
LUMOXA_API int icReadTagRaw(const void* image, const icTag_safe64bit* entry, icTagBase** out);

/// Finds a tag in a table. Where several entries have the signature, the first one counts.
///
/// @param list       the table; null counts as empty
/// @param signature  host-order number
/// @param out        receives the address of the entry inside `list`, or null
/// @return 0; icErrNoTag when no entry has the signature; icErrInvalid for a null `out`
LUMOXA_API int icGetTagPtr(icTagList_safe64bit* list, icTagSignature signature,
                           icTag_safe64bit** out);

/// Reverses the two bytes at an address, aligned or not. Null is left alone.
LUMOXA_API void icSwap2(void* at);
/// Reverses the four bytes at an address, aligned or not. Null is left alone.
LUMOXA_API void icSwap4(void* at);
/// Reverses each of `n` consecutive 16-bit numbers; nothing when `n` is below 1.
LUMOXA_API void icSwap2Array(void* at, int n);
/// Reverses each of `n` consecutive 32-bit numbers; nothing when `n` is below 1.
LUMOXA_API void icSwap4Array(void* at, int n);

// --- Profile objects ----------------------------------------------------------------------------

/// Opens a file for the stream forms of the readers above.
///
/// @param path  in the encoding that the C runtime's `fopen` takes: on Windows the ANSI code page,
///              unless the program's manifest makes that UTF-8. A file with another name can be
///              opened by the program (`_wfopen`) for the stream forms, or read by it and loaded
///              with `icProfileLoadFromBuffer`.
/// @return a stream that the caller closes with `icCloseProfile`, or null when it can't be opened
LUMOXA_API FILE* icOpenProfile(const char* path);

/// Closes a stream of `icOpenProfile`. Null does nothing.
LUMOXA_API void icCloseProfile(FILE* stream);

/// Makes a profile backed by its file, which stays open until the profile is released. Header and
/// tag table are read now, each tag when it is needed, so a tag that doesn't fit the file is found
/// only then. Cheapest to make; such a profile can't be edited, and since its tags share one stream
/// it serves one thread at a time.
///
/// @param path     as for `icOpenProfile`
/// @param profile  receives the handle, released with `icProfileFree`; null on failure
/// @return 0; icErrOpen; icErrRead when the file ends inside the header or the tag table;
///         icErrInvalid when the magic is not 'acsp' or an argument is null; icErrNoMemory, also
///         for a profile without tags
LUMOXA_API int icLoadProfile(const char* path, icProfile_t* profile);

/// Makes a profile from a file that is read whole and closed again. The profile can be edited, and
/// several threads may read it at once.
///
/// @param caller   not used, may be null
/// @param path     as for `icOpenProfile`
/// @param props    not read or written, may be null
/// @param profile  receives the handle, released with `icProfileFree`; null on failure
/// @return as `icLoadProfile`; also icErrRead when a tag does not fit the file, for which nothing
///         is allocated
LUMOXA_API int icProfileLoadProfile(icCallerId_t caller, const char* path, icFileProps_t* props,
                                    icProfile_t* profile);

/// Makes a profile from an image in memory, copying what it needs: the image may be released after
/// the call. The profile can be edited, and several threads may read it at once.
///
/// The image is trusted: header, tag count, offsets and sizes say how much of it is read. Use the
/// form with a length for an image that you have not made yourself.
///
/// @param caller   not used, may be null
/// @param image    a whole profile
/// @param profile  receives the handle, released with `icProfileFree`; null on failure, with one
///                 exception: when the copy of a tag can't be allocated the code is icErrNoMemory
///                 and the handle is a valid profile that lists the tags before that one, so that a
///                 caller short of memory can still use them. It has to be released too.
/// @return 0; icErrNullData for a null image; icErrInvalid when the magic is not 'acsp' or
///         `profile` is null; icErrNoMemory, also for a tag count of 0 or one whose table would not
///         fit a profile of 4 GiB
LUMOXA_API int icProfileLoadFromBuffer(icCallerId_t caller, const void* image,
                                       icProfile_t* profile);

/// As the other form, for an image that is not trusted: nothing outside its `length` bytes is read.
///
/// @param caller   not used, may be null
/// @param image    `length` bytes that may hold a profile
/// @param length   in bytes; the size field of the header is not consulted
/// @param profile  receives the handle, released with `icProfileFree`; null on every failure
/// @return 0; icErrRead when the header, the tag table or a tag does not fit into `length` bytes,
///         for which nothing is allocated; icErrNullData for a null image; icErrInvalid when the
///         magic is not 'acsp' or `profile` is null; icErrNoMemory, also for a profile without tags
LUMOXA_API int icProfileLoadFromBuffer(icCallerId_t caller, const void* image, size_t length,
                                       icProfile_t* profile);

/// Makes a new profile in memory: an ICC version 2.0 display profile, RGB to XYZ, created now
/// (local time), for the platform 'MSFT', with the D50 illuminant (63190, 65536, 54061 in
/// s15Fixed16) and one tag, the copyright text. It can be edited.
///
/// @param caller   not read or written, may be null
/// @param profile  receives the handle, released with `icProfileFree`; null on failure
/// @return 0; icErrNoMemory; icErrInvalid for a null `profile`
LUMOXA_API int icProfileCreate(icCallerId_t* caller, icProfile_t* profile);

/// Releases a profile with everything it holds, and closes its file. Transforms made from it stay
/// valid, and so do tag copies.
///
/// @param profile  no longer used by any thread; null does nothing
LUMOXA_API void icProfileFree(icProfile_t profile);

/// Copies a profile's header, in the form that `icReadHeader` gives.
///
/// @param out  left alone on failure
/// @return 0; icErrInvalid when `profile` is null or no profile, or `out` is null
LUMOXA_API int icProfileGetHeader(icProfile_t profile, icHeader* out);

/// Replaces a profile's header, all 128 bytes with the size field. Fields are taken as they are;
/// `creator` is in file byte order.
///
/// @param header  its magic must be 'acsp'
/// @return 0; icErrInvalid when an argument is null or the magic is another: nothing is changed
LUMOXA_API int icProfileSetHeader(icProfile_t profile, const icHeader* header);

/// Compares a profile file with a profile image, byte for byte.
///
/// @param path   as for `icOpenProfile`
/// @param image  a whole profile, trusted: as many bytes are compared as its header's size field
///               says
/// @return 0 when both are profiles of the same size with the same bytes; icErrProfilesDiffer when
///         size or bytes differ; icErrInvalid when either has another magic than 'acsp' or `path`
///         is null; icErrNullData for a null image; icErrOpen; icErrRead when the file ends in its
///         header, or before the size that both headers state with no difference until there;
///         icErrNoMemory
LUMOXA_API int icCompareProfiles(const char* path, const void* image);

/// Tests a header against a list of criteria, in their order. All must hold. By selector:
///
/// - 1 to 8: device class, colour space, connection space, preferred CMM, platform, flags,
///   manufacturer or model equals u32[0]
/// - 9, 10: upper or lower half of the device attributes equals u32[0]
/// - 11: rendering intent equals u32[0]
/// - 12: illuminant X, Y, Z equal u32[0..2] (s15Fixed16)
/// - 13: version equals u32[0], as 0x02100000 for 2.1
/// - 14: created before: year <= u16[0], month <= u16[1], day < u16[2]
/// - 15: created on: year, month, day equal u16[0..2]
/// - 16: created after: year >= u16[0], month >= u16[1], day > u16[2]
/// - 17: creator equals u32[0], in file byte order as the header holds it
///
/// The parts of a date are tested one by one and not as a date: 2019-12-01 is not "before"
/// 2020-01-15, since month 12 is above 1. Other selectors pass.
///
/// @param search  criteria; a count below 1 passes every header
/// @param header  in the form that `icReadHeader` gives
/// @return 0 when all pass; icErrInvalid when one does not, or for a null argument
LUMOXA_API int icProfileCheck(const icSearch_t* search, const icHeader* header);
