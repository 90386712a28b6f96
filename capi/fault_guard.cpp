// SPDX-License-Identifier: Apache-2.0
#include "capi/fault_guard.h"

#include <cstring>

namespace lumoxa {
namespace {

/// Bytes of a UTF-8 text that fit `room`, without a part of a character at the end.
size_t wholeCharacters(std::string_view text, size_t room) {
    if (text.size() <= room) return text.size();
    size_t length = room;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U)
        --length;
    return length;
}

void write(int32_t code, std::string_view sentence, uint32_t tag, int64_t offset, int profileIndex,
           lmx_fault* out) noexcept {
    if (out == nullptr || out->size != sizeof(lmx_fault)) return;
    out->code = code;
    out->tag = tag;
    out->profile_index = profileIndex;
    out->offset = offset;
    const size_t length = wholeCharacters(sentence, sizeof out->sentence - 1);
    std::memcpy(out->sentence, sentence.data(), length);
    out->sentence[length] = '\0';
}

}  // namespace

void report(const Fault& fault, lmx_fault* out) noexcept {
    write(fault.code, fault.sentence, fault.tag, fault.offset, fault.profileIndex, out);
}

void report(int32_t code, std::string_view sentence, lmx_fault* out) noexcept {
    write(code, sentence, 0, -1, -1, out);
}

}  // namespace lumoxa
