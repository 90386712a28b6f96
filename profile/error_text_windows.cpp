// SPDX-License-Identifier: Apache-2.0
//
// Descriptions of result codes from the string table of the DLL, and the attach handler that
// remembers the module the table belongs to. String N describes result code N. Compiled to nothing
// elsewhere, and in static builds: their module belongs to the program.
#if defined(_WIN32) && !defined(LUMOXA_STATIC)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include "profile/error_text.h"

namespace {

// The one variable of the library: written once, before any other function can run.
HINSTANCE moduleHandle = nullptr;

}  // namespace

BOOL WINAPI DllMain(HINSTANCE module, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) moduleHandle = module;
    return TRUE;
}

namespace lumoxa {

int lookUpErrorText(int code, char* text, int size) {
    // LoadStringA uses the lower 16 bits of a number alone, and for a size of 0 hands out a pointer
    // instead of characters.
    const bool isStringNumber = code >= 0 && code <= 0xFFFF;
    if (!isStringNumber || size < 1) return 0;
    return LoadStringA(moduleHandle, static_cast<UINT>(code), text, size);
}

}  // namespace lumoxa

#endif
