// SPDX-License-Identifier: Apache-2.0
//
// Handles, result codes, enumerations and the ICC records shared by every part of the interface.
//
// Signatures are host-order numbers: 'acsp' is 0x61637370 whatever the byte order of the machine.
// Numbers called s15Fixed16 are signed 32-bit integers with 1.0 = 65536 (ICC.1:2010, 4.6).
#pragma once

#include <cstddef>
#include <cstdint>

/// Identity of a caller. Accepted by the entry points that take one, never read or written, and
/// never defined: a null handle is as good as any.
struct icCallerId;
typedef const icCallerId* icCallerId_t;

/// A profile held by the library; released with `icProfileFree`. One thread at a time may edit a
/// profile or read tags from a file-backed one; any number may read a profile held in memory.
struct icProfileInternal;
typedef const icProfileInternal* icProfile_t;

/// A colour transform; released with `icXformFree`. Any number of threads may convert through one
/// transform at once. Its holder count is a plain integer, so `icXformInc` and `icXformFree` of one
/// transform belong to one thread at a time.
struct icXformInternal;
typedef const icXformInternal* icXform_t;

/// File properties accepted by `icProfileLoadProfile`, never read or written, and never defined.
struct icFileProps;
typedef const icFileProps* icFileProps_t;

typedef uint32_t icTagSignature;         ///< names a tag in a profile: 'A2B0', 'rXYZ', 'cprt', ...
typedef uint32_t icTagTypeSignature;     ///< names the layout of a tag's data: 'curv', 'mft2', ...
typedef uint32_t icColorSpaceSignature;  ///< names a colour space: 'RGB ', 'CMYK', 'Lab ', ...

/// Result codes. Every function that returns a code returns 0 or one of these.
inline constexpr int icSuccess = 0;       ///< the call did what it was asked
inline constexpr int icErrInvalid = 503;  ///< null or invalid handle, record or argument
inline constexpr int icErrTagType = 504;  ///< a tag holds another type, or declares the impossible
inline constexpr int icErrTextType =
    506;  ///< a text tag of a type that the text readers don't know
inline constexpr int icErrXformKind = 507;   ///< a transform of a kind the operation doesn't handle
inline constexpr int icErrBufferSize = 509;  ///< the caller's buffer or record is too small
inline constexpr int icErrOpen = 511;        ///< a profile file can't be opened for reading
inline constexpr int icErrRead = 512;   ///< fewer bytes are there than were declared or asked for
inline constexpr int icErrWrite = 513;  ///< a file can't be opened for writing or written whole
inline constexpr int icErrNoMemory = 515;  ///< an allocation failed
inline constexpr int icErrNoTag = 519;     ///< the tag asked for is not in the tag table
inline constexpr int icErrNullData = 520;  ///< a null pointer was given where bytes were expected
inline constexpr int icErrProfilesDiffer = 530;  ///< both are profiles, but their bytes differ

/// Rendering intents, with the values of the profile header (ICC.1:2010, 7.2.15).
enum icRenderingIntent : uint32_t {
    icPerceptual = 0,
    icRelativeColorimetric = 1,
    icSaturation = 2,
    icAbsoluteColorimetric = 3
};

/// Direction of a transform.
enum icTransType : uint32_t {
    icDeviceToPcs = 1,  ///< device to connection space (the A2B tags)
    icPcsToDevice = 2,  ///< connection space to device (the B2A tags)
    icGamutTest = 3,    ///< connection space to an out-of-gamut measure (the 'gamt' tag)
    icCombined = 4      ///< made by `icCombineXforms`; not a direction to ask for
};

/// What a progress call reports.
enum icIterState : int32_t { icIterStart = 1, icIterProgress = 2, icIterEnd = 3 };

/// Progress of a long operation, always called on the thread that called the operation.
/// `percent` is 0 at the start and 100 at the end; a non-zero answer to a progress call asks the
/// operation to stop.
typedef int (*icProgressCallback)(icIterState state, int percent, void* user);

/// Identity of the library, filled by `icGetInfo`. 24 bytes.
struct icDBInfo_s {
    char version[10];    ///< "2.1.0"
    char dbVersion[10];  ///< "1.0"
    int32_t reserved;    ///< always 0
};

/// Date and time of an ICC header (dateTimeNumber).
struct icDateTimeNumber {
    uint16_t year, month, day, hours, minutes, seconds;
};

/// A CIE XYZ triple in s15Fixed16 (XYZNumber).
struct icXYZNumber {
    int32_t X, Y, Z;
};

/// A profile header in host byte order, 128 bytes. `creator` alone keeps the byte order of the
/// file (see `icReadHeader`), and `reserved` carries the profile identifier untouched.
struct icHeader {
    uint32_t size, cmmId, version, deviceClass, colorSpace, pcs;
    icDateTimeNumber date;
    uint32_t magic, platform, flags, manufacturer, model;
    uint64_t attributes;
    uint32_t renderingIntent;
    icXYZNumber illuminant;
    uint32_t creator;
    uint8_t reserved[44];
};

/// Start of every tag's data: its type, four reserved bytes, then the body of the type.
struct icTagBase {
    uint32_t sig;
    uint8_t reserved[4];
};

/// One entry of a tag table in memory, 24 bytes. `location` is a file offset, or the address of
/// the tag's bytes once they are held in memory.
struct icTag_safe64bit {
    uint32_t signature;
    uint64_t location;
    uint32_t size;
};

/// A tag table in memory: one block of the C heap that really holds `count` entries.
struct icTagList_safe64bit {
    int32_t count;
    icTag_safe64bit tags[1];
};

/// One test of a profile header (see `icProfileCheck`), 16 bytes.
struct icSearchCriterion_t {
    uint32_t selector;  ///< 1..17: which field is tested and how
    union {
        uint32_t u32[3];
        uint16_t u16[6];
    } value;
};

/// A list of header tests.
struct icSearch_t {
    int32_t count;
    const icSearchCriterion_t* criteria;
};

static_assert(sizeof(icDBInfo_s) == 24, "fixed by the callers of icGetInfo");
static_assert(sizeof(icHeader) == 128, "fixed by the file format");
static_assert(sizeof(icDateTimeNumber) == 12 && sizeof(icXYZNumber) == 12,
              "fixed by the file format");
static_assert(sizeof(icTagBase) == 8, "fixed by the file format");
static_assert(sizeof(icTag_safe64bit) == 24, "fixed by callers that walk tag tables");
static_assert(sizeof(icTagList_safe64bit) == 32, "fixed by callers that walk tag tables");
static_assert(sizeof(icSearchCriterion_t) == 16, "fixed by callers that fill criteria");
