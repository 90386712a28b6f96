// SPDX-License-Identifier: Apache-2.0
#include "profile/error_text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <iterator>
#include <string_view>

#include "lumoxa/types.h"

namespace lumoxa {
namespace {

constexpr std::string_view kPrefix = "Profile Processor Error: ";

// The prefix and the terminating NUL: what a buffer must hold beyond a description.
constexpr int kReserve = static_cast<int>(kPrefix.size()) + 1;
static_assert(kReserve == 26, "callers size their buffers by it");

// Appends `part` to the text of `length` bytes in `buffer`, as far as `size` bytes with a NUL
// allow.
int append(char* buffer, int length, int size, std::string_view part) {
    const int room = size - 1 - length;
    const int count = std::min(static_cast<int>(part.size()), room);
    std::memcpy(buffer + length, part.data(), static_cast<size_t>(count));
    buffer[length + count] = '\0';
    return length + count;
}

int writePrefixed(int size, char* buffer, std::string_view text) {
    const int length = append(buffer, 0, size, kPrefix);
    append(buffer, length, size, text);
    const bool whole = static_cast<int>(text.size()) + kReserve <= size;
    return whole ? icSuccess : icErrBufferSize;
}

int writeDescription(int size, char* buffer, std::string_view description) {
    if (size <= kReserve) return icErrBufferSize;
    return writePrefixed(size, buffer, description);
}

// The decimal number, written to the end of `digits`. By hand because the standard conversions
// leave a symbol of their own among the library's exports.
std::string_view decimal(int number, std::array<char, 12>& digits) {
    auto magnitude =
        number < 0 ? 0U - static_cast<unsigned>(number) : static_cast<unsigned>(number);
    size_t at = digits.size();
    do {
        digits[--at] = static_cast<char>('0' + magnitude % 10);
        magnitude /= 10;
    } while (magnitude != 0);
    if (number < 0) digits[--at] = '-';
    return {digits.data() + at, digits.size() - at};
}

// A number that does not fit is cut and reported as a description is.
int writeNumber(int size, char* buffer, int code) {
    if (size < 1) return icErrBufferSize;
    std::array<char, 12> digits;
    return writePrefixed(size, buffer, decimal(code, digits));
}

#if !defined(_WIN32) || defined(LUMOXA_STATIC)

struct ErrorText {
    int code;
    std::string_view text;
};

// Descriptions for a library that has no module with a string table. None are shipped; a build that
// wants some defines LUMOXA_ERROR_TEXTS as the name of a file of lines TEXT_OF(code, "text").
constexpr ErrorText kErrorTexts[] = {
#if defined(LUMOXA_ERROR_TEXTS)
#define TEXT_OF(code, text) {code, text},
#include LUMOXA_ERROR_TEXTS
#undef TEXT_OF
#endif
    {icSuccess, {}},
};

#endif

}  // namespace

#if !defined(_WIN32) || defined(LUMOXA_STATIC)

int lookUpErrorText(int code, char* text, int size) {
    const auto* entry = std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
                                     [code](const ErrorText& e) { return e.code == code; });
    if (entry == std::end(kErrorTexts) || size < 1) return 0;
    return append(text, 0, size, entry->text);
}

#endif

int formatErrorText(int code, int size, char* buffer) {
    if (buffer == nullptr) return icErrInvalid;
    std::array<char, kErrorTextBytes> text;
    const int length = lookUpErrorText(code, text.data(), kErrorTextBytes);
    return length > 0 ? writeDescription(size, buffer, {text.data(), static_cast<size_t>(length)})
                      : writeNumber(size, buffer, code);
}

}  // namespace lumoxa
