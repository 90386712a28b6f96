// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_text.h"

#include <algorithm>

#include "tools/byte_view.h"

namespace lumoxa_tool {
namespace {

// No text of a profile is longer, and hostile ones would fill the screen.
constexpr uint64_t kMaxTextBytes = 1 << 16;

void appendUtf8(std::string& text, uint32_t character) {
    const auto byte = [](uint32_t value) { return static_cast<char>(value); };
    if (character < 0x80) {
        text += byte(character);
    } else if (character < 0x800) {
        text += {byte(0xC0 | character >> 6), byte(0x80 | (character & 0x3F))};
    } else if (character < 0x10000) {
        text += {byte(0xE0 | character >> 12), byte(0x80 | (character >> 6 & 0x3F)),
                 byte(0x80 | (character & 0x3F))};
    } else {
        text += {byte(0xF0 | character >> 18), byte(0x80 | (character >> 12 & 0x3F)),
                 byte(0x80 | (character >> 6 & 0x3F)), byte(0x80 | (character & 0x3F))};
    }
}

// Bytes that follow the first of a UTF-8 sequence, or -1 where none starts with it.
int utf8Tail(uint32_t first) {
    if (first < 0x80) return 0;
    if (first >= 0xC2 && first < 0xE0) return 1;
    if (first >= 0xE0 && first < 0xF0) return 2;
    return first >= 0xF0 && first < 0xF5 ? 3 : -1;
}

bool isUtf8(ByteView text) {
    for (uint64_t at = 0; at < text.size(); ++at) {
        const uint32_t first = text.u8(at);
        const int tail = utf8Tail(first);
        if (tail < 0 || !text.holds(at, static_cast<uint64_t>(tail) + 1)) return false;
        const uint32_t second = text.u8(at + 1);
        // Overlong forms, halves of surrogate pairs, and what is beyond Unicode.
        if ((first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
            (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F)) {
            return false;
        }
        for (int i = 0; i < tail; ++i) {
            if ((text.u8(++at) & 0xC0) != 0x80) return false;
        }
    }
    return true;
}

// ICC.1 wants 7-bit ASCII; where a maker wrote more, it is UTF-8 or most likely Latin-1.
std::string fromAscii(ByteView bytes) {
    bytes = bytes.part(0, std::min<uint64_t>(kMaxTextBytes, bytes.size()));
    bytes = {bytes.begin(), static_cast<size_t>(std::find(bytes.begin(), bytes.end(), uint8_t{0}) -
                                                bytes.begin())};
    if (isUtf8(bytes)) return {bytes.begin(), bytes.end()};
    std::string text;
    for (const uint8_t character : bytes)
        appendUtf8(text, character);
    return text;
}

std::string fromUtf16(ByteView units) {
    std::string text;
    units = units.part(0, kMaxTextBytes);
    for (uint64_t at = 0; units.holds(at, 2); at += 2) {
        uint32_t unit = units.u16(at);
        const bool leads = unit >= 0xD800 && unit < 0xDC00;
        const uint32_t next = leads ? units.u16(at + 2) : 0;
        if (next >= 0xDC00 && next < 0xE000) {
            unit = 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
            at += 2;
        } else if (unit >= 0xD800 && unit < 0xE000) {
            unit = 0xFFFD;  // half of a pair
        }
        appendUtf8(text, unit);
    }
    return text;
}

// On one line and without what follows a terminating zero. Profiles come from anywhere: control
// characters would reach the user's terminal, those above ASCII (U+0080 to U+009F) too.
std::string cleanText(std::string text) {
    text.resize(std::min(text.find('\0'), text.size()));
    for (size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (byte < 0x20 || byte == 0x7F) text[i] = ' ';
        if (byte == 0xC2 && i + 1 < text.size() && static_cast<unsigned char>(text[i + 1]) < 0xA0)
            text[i] = text[i + 1] = ' ';
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

// textDescriptionType: ASCII count at 8 and text at 12, then a language code, a count and as many
// UTF-16 characters, which some makers fill alone.
std::string descriptionText(ByteView tag) {
    constexpr uint64_t kAsciiAt = 12;
    const uint64_t asciiBytes = tag.u32(8);
    std::string text = cleanText(fromAscii(tag.part(kAsciiAt, asciiBytes)));
    if (!text.empty()) return text;
    const uint64_t unicodeAt = kAsciiAt + asciiBytes + 8;
    return cleanText(fromUtf16(tag.part(unicodeAt, 2 * uint64_t{tag.u32(unicodeAt - 4)})));
}

// multiLocalizedUnicodeType: count at 8, record size at 12, then records of language, country,
// length in bytes and offset from the tag's start.
class LocalizedRecords {
  public:
    explicit LocalizedRecords(ByteView tag)
        : tag_(tag), step_(std::max<uint64_t>(tag.u32(12), kRecordBytes)) {
        if (!tag.holds(0, kFirstRecord + kRecordBytes)) return;
        const uint64_t room = (tag.size() - kFirstRecord - kRecordBytes) / step_ + 1;
        count_ = std::min<uint64_t>(tag.u32(8), room);
    }
    uint64_t count() const { return count_; }
    bool isEnglish(uint64_t i) const { return tag_.u16(at(i)) == ('e' << 8 | 'n'); }
    std::string text(uint64_t i) const {
        return cleanText(fromUtf16(tag_.part(tag_.u32(at(i) + 8), tag_.u32(at(i) + 4))));
    }

  private:
    static constexpr uint64_t kFirstRecord = 16;
    static constexpr uint64_t kRecordBytes = 12;
    uint64_t at(uint64_t i) const { return kFirstRecord + i * step_; }

    ByteView tag_;
    uint64_t step_;
    uint64_t count_ = 0;
};

std::string englishText(const LocalizedRecords& records) {
    if (records.count() == 0) return {};
    uint64_t chosen = 0;
    while (chosen < records.count() && !records.isEnglish(chosen))
        ++chosen;
    return records.text(chosen < records.count() ? chosen : 0);
}

std::string textOf(ByteView tag) {
    switch (tag.u32(0)) {
        case fourCc("desc"):
            return descriptionText(tag);
        case fourCc("text"):
            return cleanText(fromAscii(tag.part(8, tag.size())));
        case fourCc("mluc"):
            return englishText(LocalizedRecords(tag));
        default:
            return {};
    }
}

}  // namespace

std::string tagText(const Tag& tag) {
    return textOf(ByteView(tag.bytes));
}

}  // namespace lumoxa_tool
