// SPDX-License-Identifier: Apache-2.0
#include "tests/support/native_path.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace lumoxa_test {

#if defined(_WIN32)

std::optional<std::string> pathForFopen(const std::filesystem::path& path) {
    // A process whose code page is UTF-8 takes neither the flag nor the question for losses.
    const bool isUtf8 = GetACP() == CP_UTF8;
    const DWORD flags = isUtf8 ? 0 : WC_NO_BEST_FIT_CHARS;
    BOOL lost = FALSE;
    const auto convert = [&](char* out, int size) {
        return WideCharToMultiByte(CP_ACP, flags, path.c_str(), -1, out, size, nullptr,
                                   isUtf8 ? nullptr : &lost);
    };
    std::string narrow(static_cast<size_t>(convert(nullptr, 0)), '\0');
    convert(narrow.data(), static_cast<int>(narrow.size()));
    if (lost != FALSE) return std::nullopt;
    return narrow.c_str();
}

FILE* openForReading(const std::filesystem::path& path) {
    return _wfopen(path.c_str(), L"rb");
}

#else

std::optional<std::string> pathForFopen(const std::filesystem::path& path) {
    return path.string();
}

FILE* openForReading(const std::filesystem::path& path) {
    return std::fopen(path.c_str(), "rb");
}

#endif

}  // namespace lumoxa_test
