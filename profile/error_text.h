// SPDX-License-Identifier: Apache-2.0
//
// Descriptions of result codes, and the text made of them.
#pragma once

namespace lumoxa {

/// Bytes of the longest description with its terminating NUL; longer ones are cut by the look-up.
inline constexpr int kErrorTextBytes = 1024;

/// Writes the description of `code` into `text`, NUL-terminated and cut to `size` bytes. Returns
/// its length, 0 when there is none. It comes from the string table of the module in the Windows
/// DLL, from a compiled-in table elsewhere. Both are empty; texts can be added without touching the
/// code.
int lookUpErrorText(int code, char* text, int size);

/// The body of icGetErrorText.
int formatErrorText(int code, int size, char* buffer);

}  // namespace lumoxa
