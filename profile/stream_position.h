// SPDX-License-Identifier: Apache-2.0
//
// 64-bit positions in streams: the C standard's `long` has 32 bits on Windows, a profile may have
// nearly 4 GiB.
#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>

namespace lumoxa {

/// Moves the stream to `offset` bytes from its start; false when it can't be moved there.
bool seekFromStart(FILE* stream, int64_t offset);

/// Length of the file behind a stream, whose position is kept; nothing when it can't be told (a
/// pipe has none).
std::optional<uint64_t> streamLength(FILE* stream);

}  // namespace lumoxa
