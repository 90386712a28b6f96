// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_text.h"

#include <algorithm>

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

// `size` bytes from `at`, or fewer where the tag ends.
std::string asciiText(const Bytes& tag, size_t at, size_t size) {
    if (at >= tag.size()) return {};
    const size_t end = at + std::min(size, tag.size() - at);
    return std::string(tag.begin() + static_cast<ptrdiff_t>(at),
                       tag.begin() + static_cast<ptrdiff_t>(end));
}

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

std::string fromUtf16(const Bytes& tag, size_t at, size_t size) {
    std::string text;
    if (at >= tag.size()) return text;
    const size_t end = at + std::min(size, tag.size() - at);
    for (; at + 2 <= end; at += 2) {
        uint32_t unit = bigEndian16(&tag[at]);
        const bool leads = unit >= 0xD800 && unit < 0xDC00;
        const uint32_t next = leads && at + 4 <= end ? bigEndian16(&tag[at + 2]) : 0;
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

// multiLocalizedUnicodeType: count at 8, record size at 12, then records of language, country,
// length in bytes and offset from the tag's start.
std::string multiLocalizedText(const Bytes& tag) {
    constexpr size_t kFirstRecord = 16;
    constexpr size_t kRecordBytes = 12;
    if (tag.size() < kFirstRecord + kRecordBytes) return {};
    const size_t step = std::max<size_t>(bigEndian32(&tag[12]), kRecordBytes);
    const size_t room = (tag.size() - kFirstRecord - kRecordBytes) / step + 1;
    const size_t count = std::min<size_t>(bigEndian32(&tag[8]), room);
    if (count == 0) return {};
    size_t chosen = 0;
    while (chosen < count && bigEndian16(&tag[kFirstRecord + chosen * step]) != ('e' << 8 | 'n')) {
        ++chosen;
    }
    const uint8_t* record = &tag[kFirstRecord + (chosen < count ? chosen : 0) * step];
    return fromUtf16(tag, bigEndian32(record + 8), bigEndian32(record + 4));
}

std::string rawText(const Tag& tag) {
    switch (tag.type) {
        case fourCc("desc"):
            return tag.bytes.size() < 12 ? ""
                                         : asciiText(tag.bytes, 12, bigEndian32(&tag.bytes[8]));
        case fourCc("text"):
            return asciiText(tag.bytes, 8, tag.bytes.size());
        case fourCc("mluc"):
            return multiLocalizedText(tag.bytes);
        default:
            return {};
    }
}

}  // namespace

std::string tagText(const Tag& tag) {
    std::string text = rawText(tag);
    text.resize(std::min(text.find('\0'), text.size()));
    // Profiles come from anywhere: control characters would reach the user's terminal.
    std::replace_if(
        text.begin(), text.end(),
        [](char character) {
            return static_cast<unsigned char>(character) < 0x20 || character == 0x7F;
        },
        ' ');
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

}  // namespace lumoxa_tool
