// SPDX-License-Identifier: Apache-2.0
//
// Transforms made from profiles: asking for one, describing it, sharing and releasing it.
#pragma once

#include <cstdio>

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// What a transform converts, filled by `icXformGetDesc`.
struct icXformDesc_t {
    uint32_t kind;  ///< 'mft1', 'mft2', 'mAB ', 'mBA ', 'TrcM', 'MatT', ...; 0 without a conversion
    uint32_t intent;       ///< the rendering intent asked for
    uint32_t transType;    ///< the icTransType asked for
    uint32_t inSpace;      ///< colour space of the source pixels
    uint32_t outSpace;     ///< colour space of the destination pixels
    uint32_t inChannels;   ///< samples of a source pixel
    uint32_t outChannels;  ///< samples of a destination pixel
};

/// Adds a holder to a transform, which then takes one more `icXformFree` to release.
///
/// @param xform  transform to share; null does nothing
///
/// Not atomic: holders of one transform are taken and dropped by one thread at a time.
LUMOXA_API void icXformInc(icXform_t xform);

/// Drops one holder of a transform; the last one releases it with its tables.
///
/// @param xform  transform to drop; null does nothing. Not to be used again by this holder.
///
/// Not atomic: holders of one transform are taken and dropped by one thread at a time.
LUMOXA_API void icXformFree(icXform_t xform);

/// Describes a transform.
///
/// @param xform  transform to describe, read only
/// @param out    receives the seven fields
/// @return 0; icErrInvalid when either argument is null
LUMOXA_API int icXformGetDesc(icXform_t xform, icXformDesc_t* out);

/// Makes the transform of a profile for a rendering intent and a direction.
///
/// The conversion comes from the first of these that the profile has:
///  - a LUT tag of the direction. Intents 0, 1, 2 ask for A2B0, A2B1, A2B2 (or B2A0, B2A1, B2A2)
///    first, intent 3 for A2B1 (B2A1), since absolute colorimetry is relative colorimetry scaled by
///    the media white; then 0, 1, 2 are tried in this order whatever was asked. An intent above 3
///    uses that order alone. Tags with three inputs are interpolated in tetrahedra, with four in
///    pentahedra, others multilinearly.
///  - for a GRAY profile, the private gray tag 'wzgd': tone tables of a print in three channels,
///    kinds 'KtoL' and 'LtoK' (gray.h);
///  - tone curves and colorants ('rTRC', 'rXYZ' and their companions), or 'kTRC' for GRAY.
///
/// A gamut test (transType 3) uses 'gamt'; without that tag, and for a transType outside 1..3, the
/// call succeeds with a transform that describes the spaces but converts nothing (kind 0).
///
/// What the transforms of some profiles leave out: below the break of a parametric curve of type 3,
/// all is black, so that sRGB profiles with such curves lose their shadows; the matrix and the M
/// curves behind the grid of an 'mAB ' tag take no part, so that a version 4 profile with them
/// gives other colours than it says. lumoxa/lumoxa.hpp converts without these limits.
///
/// The forms differ only in the tone parameters that they hand to the gray builders; for every
/// other profile they are the same call. This form asks for a neutral tone.
///
/// @param profile    a profile of any kind; only read, and not needed afterwards
/// @param intent     rendering intent
/// @param transType  direction
/// @param out        receives the transform, which the caller releases with `icXformFree`; null on
///                   every failure
/// @return 0; icErrInvalid for a null argument or a handle that is not a profile; icErrNoTag when
///         the profile has neither a LUT tag nor the tags of a matrix/TRC description; icErrTagType
///         for a tag of the wrong type or one that declares what no transform can have (0 channels,
///         over 16 inputs, a grid below 2, tables of fewer than 2 entries, unknown curve types);
///         icErrRead when a tag holds fewer bytes than it declares; icErrNoMemory, also for a
///         grid whose interpolation tables would take over 2 GiB
///
/// Threading: profiles held in memory may be asked by several threads at once, a file-backed one by
/// one thread at a time, since its file position moves.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          icXform_t* out);

// What the other forms ask of a gray profile with patches:
//
//   pair           wanted tone, a* and b* in the 16-bit Lab encoding; null is neutral
//   parameter      0..1, fades the tone towards paper and black (see icBuildGrayPreLuts)
//   points         control points of a split tone, 0 for none; below 0 is icErrInvalid
//   controlPoints  `points` triples of L* (0..100, rising), a*, b*, added to the pair's tone with
//                  straight lines between them; null with points above 0 is icErrInvalid
//   curve          256 values: the L* to print, 0..65280, for L* = 256 k on that scale, in place of
//                  black compensation and smoothing; null is icErrInvalid for transType 2. Not used
//                  for transType 1
//   shaping        non-zero: with the perceptual intent, shape the tones (see icBuildGrayOutLuts)
//   shapingParameter  contrast of the middle tones, 0 for their full slope

/// As the first form, for a tone. Shaped with parameter 0.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, icXform_t* out);

/// As the first form, for a tone and a tone curve.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, const float* curve, icXform_t* out);

/// As the first form, for a faded tone and a tone curve.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, float parameter, const float* curve,
                          icXform_t* out);

/// As the first form, for a faded tone and shaping.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, float parameter, icXform_t* out, int shaping,
                          float shapingParameter);

/// As the first form, for a split tone and a tone curve.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, int points, const float* controlPoints,
                          const float* curve, icXform_t* out);

/// As the first form, for a split tone and shaping.
LUMOXA_API int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
                          const unsigned short* pair, int points, const float* controlPoints,
                          icXform_t* out, int shaping, float shapingParameter);

/// Reads the media white point ('wtpt') of an open profile file.
///
/// @param stream  the profile file, whose position moves
/// @param list    its tag table, locations being file offsets
/// @param white   receives X, Y, Z with 1.0 = 32768; untouched on failure
/// @return 0; icErrInvalid for a null argument; icErrNoTag without the tag; icErrRead when it is
///         too short; icErrNoMemory
LUMOXA_API int icGetMediaWhitepoint(FILE* stream, icTagList_safe64bit* list,
                                    unsigned short white[3]);

/// Reads the media white point ('wtpt') of a profile whose tags are in memory.
///
/// @param image  not read: as with the memory form of `icReadTag`, the locations in the table are
///               the addresses of the tags' bytes
/// @param list   the tag table
/// @param white  receives X, Y, Z with 1.0 = 32768; untouched on failure
/// @return as the form for files
LUMOXA_API int icGetMediaWhitepoint(const void* image, icTagList_safe64bit* list,
                                    unsigned short white[3]);

/// Builds the conversion from a device to the connection space out of tone curves and colorants
/// (or 'kTRC' for a GRAY profile): kind 'TrcM', curves, then a matrix (ICC.1:2010, F.3).
///
/// The curve tables have as many entries as the red curve when that is sampled, else 4096.
///
/// @param profile  the profile to read
/// @param xform    a transform record in the making, as `icXformGet` makes them; receives kind,
///                 channel and table counts and the state
/// @param intent   not used: a matrix/TRC description serves every intent
/// @return 0; icErrInvalid for a null argument; icErrNoTag when a curve or colorant is missing;
///         icErrTagType for a curve of another type; icErrRead when a tag is too short;
///         icErrNoMemory. On failure the record has no state; its owner releases it.
LUMOXA_API int icBuildTrcMatrixXform(icProfileInternal* profile, icXformInternal* xform,
                                     icRenderingIntent intent);

/// Builds the conversion from the connection space to a device: kind 'MatT', the inverse of the
/// colorant matrix, then the inverse curves, found by Brent's root-finding method.
///
/// A singular colorant matrix gives a transform whose matrix is zero. The form of the red curve
/// (identity, gamma, sampled) decides how all three are inverted.
///
/// Parameters and results as `icBuildTrcMatrixXform`.
LUMOXA_API int icBuildMatrixTrcXform(icProfileInternal* profile, icXformInternal* xform,
                                     icRenderingIntent intent);

/// Stores a transform made from a lut8 or lut16 tag, or by a combination, as a tag of a profile:
/// 'A2B0', 'A2B1', 'A2B2' for transType 1 and intents 0, 1, 2, 'B2A0' and so on for transType 2,
/// 'gamt' for transType 3. Absolute colorimetry stores the relative colorimetric tag, from which it
/// is read. A tag of that signature is replaced, the first where several have it.
///
/// The tag is two (lut16) or three (lut8) zero bytes longer than its own layout. The header's size
/// field follows roughly: the data's size, and 24 for an entry that is added.
///
/// @param profile    an editable profile; on failure it is as it was
/// @param type       'mft1' or 'mft2' to insist on that precision; the tag has the transform's own
/// @param intent     0..3
/// @param transType  1..3, also for a combination, which bears 4
/// @param xform      transform to store, only read
/// @return 0; icErrInvalid when `profile` is null, no profile or file-backed, or an intent or
///         transType is none of those; icErrXformKind for a null transform, one of another kind
///         ('mAB ' and 'mBA ' among them), 'mft1' asked of an 'mft2' transform or the other way
///         round; icErrNoMemory
LUMOXA_API int icXformSet(icProfile_t profile, icTagTypeSignature type, icRenderingIntent intent,
                          icTransType transType, icXform_t xform);

/// Converts a LUT tag ('mft1', 'mft2', 'mAB ', 'mBA ') in place from file byte order to host order:
/// all but the type signature, which the tag readers have converted. Other tags stay untouched.
///
/// @param tag  a whole tag with its type signature in host order. The counts and offsets inside are
///             trusted: a tag from outside is better left to `icXformGet`, which checks it first.
LUMOXA_API void icSwapLut(icTagBase* tag);

/// Converts an 'mft1' or 'mft2' tag in place from host order to file byte order, except for the
/// type signature. 'mAB ', 'mBA ' and other tags stay untouched.
///
/// @param tag  a whole tag in host order
LUMOXA_API void icUnSwapLut(icTagBase* tag);

static_assert(sizeof(icXformDesc_t) == 28, "fixed by callers");
