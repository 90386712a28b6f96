// SPDX-License-Identifier: Apache-2.0
#include "profile/description_text.h"

#include <algorithm>
#include <string_view>

#include "base/byte_order.h"
#include "base/utf8.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

using Span = std::span<const uint8_t>;

constexpr uint64_t kTypeBytes = 8;     // signature and four reserved bytes
constexpr uint64_t kUnitBytes = 2;     // of UTF-16
constexpr uint64_t kRecordBytes = 12;  // of a language in an 'mluc' tag

bool holds(Span bytes, uint64_t at, uint64_t count) {
    return at <= bytes.size() && count <= bytes.size() - at;
}

// `count` bytes from `at`; none where they don't all lie inside.
Span part(Span bytes, uint64_t at, uint64_t count) {
    if (!holds(bytes, at, count)) return {};
    return bytes.subspan(static_cast<size_t>(at), static_cast<size_t>(count));
}

// 0 where it doesn't lie inside.
uint32_t u32(Span bytes, uint64_t at) {
    const Span four = part(bytes, at, sizeof(uint32_t));
    return four.empty() ? 0 : loadFileOrder<uint32_t>(four.data());
}

std::string fromAscii(Span bytes) {
    const auto end = std::find(bytes.begin(), bytes.end(), uint8_t{0});
    std::string text(bytes.begin(), end);
    if (isUtf8(text)) return text;
    text.clear();
    for (const uint8_t latin1 : bytes.first(static_cast<size_t>(end - bytes.begin())))
        appendUtf8(text, latin1);
    return text;
}

char32_t unitAt(Span units, size_t at) {
    return holds(units, at, kUnitBytes) ? loadFileOrder<uint16_t>(&units[at]) : 0;
}

std::string fromUtf16(Span units) {
    std::string text;
    for (size_t at = 0; unitAt(units, at) != 0; at += kUnitBytes) {
        char32_t c = unitAt(units, at);
        const char32_t next = unitAt(units, at + kUnitBytes);
        const bool isPair = c >= 0xD800 && c < 0xDC00 && next >= 0xDC00 && next < 0xE000;
        if (isPair) {
            c = 0x10000 + ((c - 0xD800) << 10) + (next - 0xDC00);
            at += kUnitBytes;
        }
        appendUtf8(text, c);
    }
    return text;
}

// textDescriptionType (ICC.1:2001-04, 6.5.17): ASCII count at 8 and text at 12, then a language
// code, a count and as many UTF-16 units, which some makers fill alone.
std::string fromDescription(Span tag) {
    constexpr uint64_t kAsciiAt = kTypeBytes + 4;
    const uint64_t asciiBytes = u32(tag, kTypeBytes);
    std::string text = fromAscii(part(tag, kAsciiAt, asciiBytes));
    if (!text.empty()) return text;
    const uint64_t unicodeAt = kAsciiAt + asciiBytes + 8;
    return fromUtf16(part(tag, unicodeAt, kUnitBytes * u32(tag, unicodeAt - 4)));
}

// multiLocalizedUnicodeType (ICC.1:2010, 10.13): count at 8, record size at 12, then records of
// language and country, length in bytes and offset from the tag's start.
class LocalizedRecords {
  public:
    explicit LocalizedRecords(Span tag) : tag_(tag), step_(u32(tag, 12)) {
        const uint64_t count = u32(tag, kTypeBytes);
        if (step_ >= kRecordBytes && holds(tag, kFirstRecord, count * step_)) count_ = count;
    }

    uint64_t count() const { return count_; }

    std::string text(uint64_t i) const {
        const uint64_t at = kFirstRecord + i * step_;
        return fromUtf16(part(tag_, u32(tag_, at + 8), u32(tag_, at + 4)));
    }

    std::string language(uint64_t i) const {
        const Span four = part(tag_, kFirstRecord + i * step_, sizeof(uint32_t));
        return {four.begin(), four.end()};
    }

    // The first record whose language and country are `wanted` in the bits of `mask`, or count().
    uint64_t find(uint32_t wanted, uint32_t mask) const {
        uint64_t i = 0;
        while (i < count_ && ((u32(tag_, kFirstRecord + i * step_) ^ wanted) & mask) != 0)
            ++i;
        return i;
    }

  private:
    static constexpr uint64_t kFirstRecord = 16;

    Span tag_;
    uint64_t step_;
    uint64_t count_ = 0;
};

std::string fromLocalized(Span tag) {
    const LocalizedRecords records(tag);
    constexpr uint32_t kAmericanEnglish = fourcc("enUS");
    for (const uint32_t mask : {0xFFFFFFFFU, 0xFFFF0000U, 0U}) {  // country too, language, any
        const uint64_t found = records.find(kAmericanEnglish, mask);
        if (found < records.count()) return records.text(found);
    }
    return {};
}

}  // namespace

std::string descriptionUtf8(std::span<const uint8_t> descTag) {
    switch (u32(descTag, 0)) {
        case kTypeDescription:
            return fromDescription(descTag);
        case kTypeMultiLocalized:
            return fromLocalized(descTag);
        case kTypeText:
            return fromAscii(descTag.subspan(std::min<size_t>(kTypeBytes, descTag.size())));
        default:
            return {};
    }
}

std::string utf8FromUtf16(std::span<const uint8_t> units) {
    return fromUtf16(units);
}

std::vector<LocalizedText> localizedTexts(std::span<const uint8_t> textTag, size_t mostBytes,
                                          uint64_t& more) {
    std::vector<LocalizedText> texts;
    more = 0;
    if (u32(textTag, 0) != kTypeMultiLocalized) {
        std::string text = descriptionUtf8(textTag);
        if (!text.empty()) texts.push_back({"", std::move(text)});
        return texts;
    }
    const LocalizedRecords records(textTag);
    size_t read = 0;
    for (uint64_t i = 0; i < records.count() && read < mostBytes; ++i) {
        texts.push_back({records.language(i), records.text(i)});
        read += kRecordBytes + texts.back().text.size();
    }
    more = records.count() - texts.size();
    return texts;
}

}  // namespace lumoxa
