// SPDX-License-Identifier: Apache-2.0
//
// Chains of transforms made into one, and the Lab and XYZ transforms that serve as their stages.
#pragma once

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// Header of a lut16 tag ('mft2') as laid out in a file, but in host byte order; the input tables,
/// the grid and the output tables follow at byte 52, all as 16-bit words (lut16Type of
/// ICC.1:2001-04).
struct icLut16Type {
    uint32_t sig;
    uint8_t reserved[4];
    uint8_t inputChan;
    uint8_t outputChan;
    uint8_t clutPoints;  ///< grid points of every dimension
    uint8_t pad;
    int32_t e00, e01, e02, e10, e11, e12, e20, e21, e22;  ///< matrix, s15Fixed16
    uint16_t inputEnt;                                    ///< entries of each input table
    uint16_t outputEnt;                                   ///< entries of each output table
};
static_assert(sizeof(icLut16Type) == 52, "fixed by the file format");

/// Options of the second form of `icCombineXforms`.
inline constexpr int icCombineColorimetric = 1;    ///< no display black lift and no removal of it
inline constexpr int icCombineKeepPaperWhite = 2;  ///< no paper-white adjustment

/// Combines a chain of transforms into one transform of kind 'mft2'.
///
/// Neighbours fit when their channel counts agree and their spaces are the same, or both are
/// connection spaces; Lab/XYZ conversions and the white scaling of absolute colorimetry are put in
/// where needed. The result's grid is sized from the chain; its input tables carry the first
/// stage's curves when no transform of the chain has a grid of its own, it does not start with a
/// gray device of patches, and does not end in one or in a conversion to Lab; its output tables
/// carry the last stage's curves; its grid is filled by running every point through the chain in 16
/// bits. Any other chain in which no transform has a grid gets three grid points a channel: exact
/// where it is linear between its end curves, but what is not (colours that the target's gamut cuts
/// off, Lab between XYZ profiles and Lab ones) is spread over half the range. Where that matters,
/// convert with one transform after the other.
///
/// Three grid points make AdobeRGB to sRGB err by Delta E*ab 3.6 in the mean over random colours,
/// inside sRGB too. lumoxa/lumoxa.hpp converts without these limits.
///
/// For an RGB display at the start of the chain, black is lifted by 1/24 of the range, and lowered
/// by as much for an RGB display at its end (with any start but Lab), so that a shadow keeps its
/// distance from the display's flare. A printer at the end of a chain that is not absolute gets its
/// white snapped to bare paper where the chain is within 2 % of it. The second form can switch both
/// off.
///
/// @param count        transforms in the chain, at least 1
/// @param chain        their handles, first stage first; only read: they may be in use on other
///                     threads and are not needed afterwards
/// @param out          receives the transform, released with `icXformFree`; null on every failure
/// @param failingLink  optional; receives i + 1 when transform i does not fit transform i + 1
/// @param progress     not used by this form
/// @param user         not used by this form
/// @param flags        not used by this form
/// @return 0; icErrXformKind when two neighbours do not fit, for a transform that converts
///         nothing or has other than 3 channels on a connection-space side, and for end curves of
///         over 65535 entries; icErrInvalid for a null argument, a null handle in the chain or a
///         count below 1; icErrNoMemory
LUMOXA_API int icCombineXforms(int count, const icXform_t* chain, icXform_t* out, int* failingLink,
                               icProgressCallback progress, void* user, unsigned int flags);

/// As the first form, with options and progress.
///
/// @param options   sum of icCombineColorimetric and icCombineKeepPaperWhite; 0 gives the first
///                  form's result; any other bit is icErrInvalid
/// @param progress  optional; called on this thread with (start, 0), with (progress, percent) as
///                  slices of the grid have passed through the chain, and with (end, 100). A
///                  non-zero answer to a progress call stops the work: the end call follows, its
///                  answer is returned (icErrInvalid where that is 0), and nothing is built.
///                  Arguments are checked before the first call
/// @param flags     reserved, 0
LUMOXA_API int icCombineXforms(int count, const icXform_t* chain, icXform_t* out, int options,
                               int* failingLink, icProgressCallback progress, void* user,
                               unsigned int flags);

/// Allocates a lut16 tag in host byte order.
///
/// The matrix is the identity, input tables are ramps from 0 to 65535, output tables of 2 entries
/// are (0, 65535), longer ones and the grid are 0 for the caller to fill. Two zero bytes follow the
/// tables.
///
/// @param lut          receives the block, released with `icFree`; may be null (the block is then
///                     not kept); null on failure
/// @param inChannels   1..16
/// @param inEntries    entries of each input table, 2..65535, or 0 for 2
/// @param grid         grid points of every dimension, 2..255
/// @param outChannels  1..255
/// @param outEntries   entries of each output table, 2..65535, or 0 for 2
/// @param size         optional; receives the block's size in bytes
/// @return 0; icErrInvalid for a count outside those ranges; icErrNoMemory
LUMOXA_API int icAllocLut16(icLut16Type** lut, int inChannels, int inEntries, int grid,
                            int outChannels, int outEntries, unsigned int* size);

/// Makes the transform from Lab to XYZ (kind 'LtoX'), for chains.
///
/// @param pcsWhite    white that Lab refers to, XYZ with 1.0 = 32768
/// @param mediaWhite  media white that the stage passes on to its neighbours in a chain
/// @param fullScaleL  true: source L* 0..100 is 0..65535; false: 0..65280
/// @return the transform, released with `icXformFree`; null for a null white or without memory
LUMOXA_API icXformInternal* icGetLabToXyzXform(const unsigned short pcsWhite[3],
                                               const unsigned short mediaWhite[3], bool fullScaleL);

/// Makes the transform from XYZ to Lab (kind 'XtoL'), for chains. Its L* is 0..65280.
///
/// @param pcsWhite    white that Lab refers to, XYZ with 1.0 = 32768
/// @param mediaWhite  media white that the stage passes on to its neighbours in a chain
/// @return the transform, released with `icXformFree`; null for a null white or without memory
LUMOXA_API icXformInternal* icGetXyzToLabXform(const unsigned short pcsWhite[3],
                                               const unsigned short mediaWhite[3]);

/// Makes a Lab identity that scales its output to a number of bits a channel.
///
/// Its media white has Z 20730 where D50 has 27030: absolute colorimetry in a chain with it gets a
/// colour cast. Its L* passes as it is, whichever of the two 16-bit encodings (0..65280, 0..65535)
/// the caller means; neighbours in a chain take it for the first. lumoxa/lumoxa.hpp converts
/// without these limits, with L* coded one way throughout.
///
/// @param bitsL  1..16; L* values end at 2^bitsL - 1
/// @param bitsA  the same for a*
/// @param bitsB  the same for b*
/// @param out    receives the transform, released with `icXformFree`; null on failure
/// @return 0; icErrInvalid for a null argument or bits outside 1..16; icErrNoMemory
LUMOXA_API int icMakeLabXform(int bitsL, int bitsA, int bitsB, icXform_t* out);

/// Combines a chain that starts in a connection space into one transform from Lab, with source
/// L* 0..100 as 0..65535.
///
/// @param count        transforms in the chain, at least 1
/// @param chain        their handles
/// @param out          receives the transform, released with `icXformFree`; null on failure
/// @param failingLink  optional; counts the Lab stage put in front as transform 0
/// @return 0; icErrXformKind when the first transform does not start in a connection space, or
///         neighbours do not fit; icErrInvalid as `icCombineXforms`; icErrNoMemory
LUMOXA_API int icBuildLabXform(int count, const icXform_t* chain, icXform_t* out, int* failingLink);

/// Combines one transform that ends in a connection space with a conversion to Lab.
///
/// @param count        1: only a single transform can be followed by the Lab stage
/// @param chain        its handle
/// @param out          receives the transform, released with `icXformFree`; null on failure
/// @param options      as the second form of `icCombineXforms`
/// @param failingLink  optional
/// @return 0; icErrXformKind when the transform does not end in a connection space; icErrInvalid
///         for a count other than 1, a null argument or unknown options; icErrNoMemory
LUMOXA_API int icBuild2LabXform(int count, const icXform_t* chain, icXform_t* out, int options,
                                int* failingLink);

/// As the form with options, with options 0.
LUMOXA_API int icBuild2LabXform(int count, const icXform_t* chain, icXform_t* out,
                                int* failingLink);

/// Makes the stage that squeezes L* 0..100 of a perceptual rendering into the range between the
/// darkest and the lightest colour of a device, and shifts a* and b* along (kind 'PtoR', Lab to
/// Lab). For chains: it converts nothing by itself.
///
/// Black and white are what the transform gives for pixels of all 0 and all 65535. They are found
/// when the first of these stages is asked for and kept with the transform, which this call
/// therefore writes to: it belongs to the one thread that also shares and releases the transform.
///
/// @param xform  a transform from a device with RGB input to a connection space
/// @return the stage, released with `icXformFree`, also after `xform`; null for a null transform,
///         for other inputs than RGB, for more than 16 channels and without memory. When black and
///         white can't be found, since the transform does not end in a connection space or
///         converts nothing, the stage has none, and a chain with it is icErrXformKind.
LUMOXA_API icXform_t icGetPerceptualToRelativeXform(icXform_t xform);

/// Makes the stage that does the reverse (kind 'RtoP'): stretches the L* between a device's darkest
/// and lightest colour to 0..100, and limits what lies outside. a* and b* pass unchanged, up to
/// 65280. Where black and white have the same L*, what is darker becomes 0 and the rest 100.
///
/// @param xform  a transform from a device, with any inputs, to a connection space
/// @return as the other stage; null also when black and white can't be found
LUMOXA_API icXform_t icGetRelativeToPerceptualXform(icXform_t xform);
