// SPDX-License-Identifier: Apache-2.0
//
// Conversion of a profile header between file and host byte order.
#pragma once

#include <cstdio>

#include "lumoxa/types.h"

namespace lumoxa {

inline constexpr uint32_t kHeaderSize = sizeof(icHeader);

/// Converts the fields of a header in place, in either direction.
///
/// `creator` is left as it is: its value in memory is the one in the file read as a little-endian
/// number. Searches compare it in that form, and it is written back the same way.
/// `reserved` holds bytes, not numbers.
void swapHeader(icHeader& header);

/// The header at the start of `image`, in host order.
icHeader headerOf(const void* image);

/// Reads a header at the stream's position and requires the magic of a profile: icErrRead,
/// icErrInvalid. `out` may be written on failure.
int readProfileHeader(FILE* stream, icHeader& out);

}  // namespace lumoxa
