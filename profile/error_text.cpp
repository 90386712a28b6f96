// SPDX-License-Identifier: Apache-2.0
#include "profile/error_text.h"

#include <algorithm>
#include <array>
#include <cstring>
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

// A number that does not fit is cut like a description, and told like one: the buffer's size is the
// caller's word for what may be written.
int writeNumber(int size, char* buffer, int code) {
    if (size < 1) return icErrBufferSize;
    std::array<char, 12> digits;
    return writePrefixed(size, buffer, decimal(code, digits));
}

}  // namespace

int formatErrorText(int code, int size, char* buffer) {
    if (buffer == nullptr) return icErrInvalid;
    std::array<char, kErrorTextBytes> text;
    const int length = lookUpErrorText(code, text.data(), kErrorTextBytes);
    return length > 0 ? writeDescription(size, buffer, {text.data(), static_cast<size_t>(length)})
                      : writeNumber(size, buffer, code);
}

}  // namespace lumoxa
