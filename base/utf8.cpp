// SPDX-License-Identifier: Apache-2.0
#include "base/utf8.h"

#include <cstdint>

namespace lumoxa {
namespace {

constexpr char32_t kLastCharacter = 0x10FFFF;

// How the first byte of a sequence looks, and the characters that need one of that length.
struct Lead {
    uint8_t mask, value;
    size_t more;
    char32_t first, last;
};
constexpr Lead kLeads[] = {{0x80, 0x00, 0, 0, 0x7F},
                           {0xE0, 0xC0, 1, 0x80, 0x7FF},
                           {0xF0, 0xE0, 2, 0x800, 0xFFFF},
                           {0xF8, 0xF0, 3, 0x10000, kLastCharacter}};

constexpr uint8_t kTailMask = 0xC0, kTailValue = 0x80, kTailBits = 0x3F;

struct Decoded {
    char32_t character = kReplacement;
    size_t bytes = 0;  // 0 where no valid sequence begins
};

uint8_t byteAt(std::string_view text, size_t at) {
    return static_cast<uint8_t>(text[at]);
}

Decoded decoded(std::string_view text, size_t at, const Lead& lead) {
    if (text.size() - at <= lead.more) return {};
    char32_t c = byteAt(text, at) & static_cast<uint8_t>(~lead.mask);
    for (size_t i = 1; i <= lead.more; ++i) {
        const uint8_t byte = byteAt(text, at + i);
        if ((byte & kTailMask) != kTailValue) return {};
        c = c << 6 | (byte & kTailBits);
    }
    if (c < lead.first || c > lead.last || isSurrogate(c)) return {};
    return {c, lead.more + 1};
}

Decoded decoded(std::string_view text, size_t at) {
    for (const Lead& lead : kLeads) {
        if ((byteAt(text, at) & lead.mask) == lead.value) return decoded(text, at, lead);
    }
    return {};
}

}  // namespace

char32_t nextCharacter(std::string_view text, size_t& at) {
    const Decoded next = decoded(text, at);
    at += next.bytes == 0 ? 1 : next.bytes;
    return next.character;
}

void appendUtf8(std::string& text, char32_t c) {
    if (c > kLastCharacter || isSurrogate(c)) c = kReplacement;
    const Lead* lead = kLeads;
    while (c > lead->last)
        ++lead;
    size_t tail = lead->more;
    text += static_cast<char>(lead->value | c >> (6 * tail));
    while (tail-- > 0)
        text += static_cast<char>(kTailValue | (c >> (6 * tail) & kTailBits));
}

bool isUtf8(std::string_view text) {
    for (size_t at = 0; at < text.size();) {
        const Decoded next = decoded(text, at);
        if (next.bytes == 0) return false;
        at += next.bytes;
    }
    return true;
}

}  // namespace lumoxa
