// SPDX-License-Identifier: Apache-2.0
#include "profile/tag_bytes.h"

#include <cmath>

#include "base/fault.h"
#include "base/utf8.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

void putUtf16(TagBytes& bytes, char32_t c) {
    if (c < 0x10000) return put16(bytes, c);
    put16(bytes, 0xD800 + ((c - 0x10000) >> 10));
    put16(bytes, 0xDC00 + (c & 0x3FF));
}

}  // namespace

int32_t toFixed16(double value) {
    constexpr double kInt32Range = 2147483648.0;  // 2^31
    const double scaled = std::floor(value * kFixedOne + 0.5);
    if (!(scaled >= -kInt32Range && scaled < kInt32Range)) {
        throw FaultError(icErrInvalid,
                         "a number lies outside of -32768 to 32768, all that s15Fixed16 holds");
    }
    return static_cast<int32_t>(scaled);
}

void put16(TagBytes& bytes, uint32_t value) {
    bytes.push_back(static_cast<uint8_t>(value >> 8));
    bytes.push_back(static_cast<uint8_t>(value));
}

void put32(TagBytes& bytes, uint32_t value) {
    put16(bytes, value >> 16);
    put16(bytes, value);
}

void putFixed(TagBytes& bytes, std::span<const int32_t> numbers) {
    for (const int32_t number : numbers)
        put32(bytes, static_cast<uint32_t>(number));
}

TagBytes startOfTag(uint32_t type) {
    TagBytes tag;
    put32(tag, type);
    put32(tag, 0);
    return tag;
}

TagBytes xyzTag(const FixedXyz& xyz) {
    TagBytes tag = startOfTag(kTypeXyz);
    putFixed(tag, xyz);
    return tag;
}

TagBytes matrixTag(const std::array<FixedXyz, 3>& rows) {
    TagBytes tag = startOfTag(fourcc("sf32"));
    for (const FixedXyz& row : rows)
        putFixed(tag, row);
    return tag;
}

TagBytes curveTag(std::span<const uint16_t> entries) {
    TagBytes tag = startOfTag(kTypeCurve);
    put32(tag, static_cast<uint32_t>(entries.size()));
    for (const uint16_t entry : entries)
        put16(tag, entry);
    return tag;
}

TagBytes parametricTag(uint32_t function, std::span<const double> parameters) {
    TagBytes tag = startOfTag(kTypeParametric);
    put16(tag, function);
    put16(tag, 0);
    for (const double parameter : parameters)
        put32(tag, static_cast<uint32_t>(toFixed16(parameter)));
    return tag;
}

TagBytes descriptionTag(std::string_view ascii) {
    constexpr size_t kUnicode = 8;      // language and count
    constexpr size_t kScriptCode = 70;  // code, count and name
    TagBytes tag = startOfTag(kTypeDescription);
    put32(tag, static_cast<uint32_t>(ascii.size() + 1));
    tag.insert(tag.end(), ascii.begin(), ascii.end());
    tag.resize(tag.size() + 1 + kUnicode + kScriptCode);
    return tag;
}

TagBytes textTag(std::string_view ascii) {
    TagBytes tag = startOfTag(kTypeText);
    tag.insert(tag.end(), ascii.begin(), ascii.end());
    tag.push_back(0);
    return tag;
}

TagBytes localizedTag(std::string_view text) {
    constexpr uint32_t kRecordBytes = 12;
    constexpr uint32_t kTextStart = 16 + kRecordBytes;
    TagBytes utf16;
    for (size_t at = 0; at < text.size();)
        putUtf16(utf16, nextCharacter(text, at));
    TagBytes tag = startOfTag(kTypeMultiLocalized);
    for (const uint32_t field :
         {1U, kRecordBytes, fourcc("enUS"), static_cast<uint32_t>(utf16.size()), kTextStart})
        put32(tag, field);
    tag.insert(tag.end(), utf16.begin(), utf16.end());
    return tag;
}

}  // namespace lumoxa
