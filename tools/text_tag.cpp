// SPDX-License-Identifier: Apache-2.0
#include "tools/text_tag.h"

#include <algorithm>
#include <cstddef>

#include "lumoxa/tags.h"
#include "tools/filled_tag.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

bool isLocalized(uint32_t version) {
    return version >> 24 >= 4;
}

void requirePrintable(const std::string& text) {
    const bool printable = std::none_of(text.begin(), text.end(), [](char character) {
        const auto code = static_cast<unsigned char>(character);
        return (code < 0x20 && character != '\n' && character != '\t') || code == 0x7F;
    });
    if (!printable) throw UsageError("a text has control characters; leave them out");
}

void requireAscii(const std::string& text) {
    const bool ascii = std::all_of(text.begin(), text.end(), [](char character) {
        return static_cast<unsigned char>(character) < 0x80;
    });
    if (ascii) return;
    throw UsageError("text '" + text +
                     "' is not plain ASCII, and a profile before version 4 holds nothing else; "
                     "write it without accents and other special characters");
}

[[noreturn]] void refuseBytes() {
    throw UsageError("a text is not valid UTF-8; check the locale of the terminal or script");
}

// How a first byte of a UTF-8 sequence looks, and the lowest code that needs so many bytes.
struct Utf8Lead {
    uint8_t mask, value;
    size_t more;
    uint32_t lowest;
};
constexpr Utf8Lead kLeads[] = {
    {0x80, 0x00, 0, 0}, {0xE0, 0xC0, 1, 0x80}, {0xF0, 0xE0, 2, 0x800}, {0xF8, 0xF0, 3, 0x10000}};

// The character at `at`, which moves behind it.
uint32_t nextCharacter(const std::string& text, size_t& at) {
    const auto first = static_cast<uint8_t>(text[at++]);
    const auto* lead =
        std::find_if(std::begin(kLeads), std::end(kLeads),
                     [=](const Utf8Lead& form) { return (first & form.mask) == form.value; });
    if (lead == std::end(kLeads) || text.size() - at < lead->more) refuseBytes();
    uint32_t character = first & static_cast<uint8_t>(~lead->mask);
    for (const size_t end = at + lead->more; at < end; ++at) {
        const auto byte = static_cast<uint8_t>(text[at]);
        if ((byte & 0xC0) != 0x80) refuseBytes();
        character = character << 6 | (byte & 0x3F);
    }
    const bool isSurrogate = character >= 0xD800 && character < 0xE000;
    if (character < lead->lowest || character > 0x10FFFF || isSurrogate) refuseBytes();
    return character;
}

Bytes utf16(const std::string& text) {
    Bytes units;
    for (size_t at = 0; at < text.size();) {
        const uint32_t character = nextCharacter(text, at);
        if (character < 0x10000) {
            put16(units, character);
        } else {
            put16(units, 0xD800 + ((character - 0x10000) >> 10));
            put16(units, 0xDC00 + (character & 0x3FF));
        }
    }
    return units;
}

Bytes localizedTag(const std::string& text) {
    constexpr uint32_t kRecordBytes = 12;
    constexpr uint32_t kTextStart = 16 + kRecordBytes;
    const Bytes units = utf16(text);
    Bytes tag = startOfTag(fourCc("mluc"));
    put32(tag, 1);
    put32(tag, kRecordBytes);
    put32(tag, fourCc("enUS"));
    put32(tag, static_cast<uint32_t>(units.size()));
    put32(tag, kTextStart);
    tag.insert(tag.end(), units.begin(), units.end());
    return tag;
}

}  // namespace

std::vector<uint8_t> descriptionTag(const std::string& text, uint32_t version) {
    requirePrintable(text);
    if (isLocalized(version)) return localizedTag(text);
    requireAscii(text);
    return filledTag([&](icTagBase** tag) { return icFillProfileDescription(text.c_str(), tag); });
}

std::vector<uint8_t> copyrightTag(const std::string& text, uint32_t version) {
    requirePrintable(text);
    if (isLocalized(version)) return localizedTag(text);
    requireAscii(text);
    Bytes tag = startOfTag(fourCc("text"));
    tag.insert(tag.end(), text.begin(), text.end());
    tag.push_back(0);
    return tag;
}

}  // namespace lumoxa_tool
