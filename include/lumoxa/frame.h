// SPDX-License-Identifier: Apache-2.0
//
// Start and stop, error texts, identity of the library, release of plain blocks.
//
// The library keeps no state between calls: everything here may be called from any thread at any
// time, and nothing has to be called first.
#pragma once

#include "lumoxa/export.h"
#include "lumoxa/types.h"

/// Does nothing: the library needs no start. Kept so that a caller can mark where it begins.
///
/// @param caller    not read or written, may be null
/// @param progress  not kept, may be null
/// @param user      not kept
/// @return 0
LUMOXA_API int icInitialize(icCallerId_t* caller, icProgressCallback progress, void* user);

/// Does nothing: there is nothing to stop. Handles stay valid until each is released.
///
/// @param caller  not read or written, may be null
/// @return 0
LUMOXA_API int icTerminate(icCallerId_t* caller);

/// Does nothing: the library keeps nothing per thread.
///
/// @param caller    not used, may be null
/// @param progress  not kept, may be null
/// @param user      not kept
/// @return 0
LUMOXA_API int icInitThread(icCallerId_t caller, icProgressCallback progress, void* user);

/// Does nothing, as `icInitThread`.
///
/// @param caller  not used, may be null
/// @return 0
LUMOXA_API int icTermThread(icCallerId_t caller);

/// Writes the text of a result code: "Profile Processor Error: " followed by the description of
/// the code, or by its decimal number where the library has no description (it ships with none).
///
/// @param code    any number; unknown codes give their number
/// @param size    bytes in `buffer`. A description gets size - 26 bytes, so that the prefix and the
///                terminating NUL always fit.
/// @param buffer  receives the text, NUL-terminated
/// @return 0; icErrBufferSize when the text was cut to fit, and also, with nothing written, when
///         `size` is below 1 or leaves no room for any of a description; icErrInvalid for a null
///         buffer
LUMOXA_API int icGetErrorText(int code, int size, char* buffer);

/// Tells the version of the library.
///
/// @param info  filled on success, otherwise left alone
/// @param size  bytes that the caller has room for at `info`, at least sizeof(icDBInfo_s) = 24
/// @return 0; icErrBufferSize when `size` is too small; icErrInvalid for a null record
LUMOXA_API int icGetInfo(icDBInfo_s* info, int size);

/// Releases a plain block that the library handed out: a tag table, a tag copy, a filled tag, a
/// text. Such blocks come from the C heap of the library's runtime; on Windows a program with
/// another runtime must release them here and not with its own `free`.
///
/// @param block  may be null. Never a profile or a transform: they have their own release
/// functions.
LUMOXA_API void icFree(void* block);

/// Tells the byte order of the host that the library was built for.
///
/// @return 1 where integers are stored with the most significant byte first, else 0. The library is
///         built for little-endian hosts, so 0.
LUMOXA_API int icIsBigEndian();
