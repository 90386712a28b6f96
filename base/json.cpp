// SPDX-License-Identifier: Apache-2.0
#include "base/json.h"

#include <charconv>
#include <cmath>

#include "base/utf8.h"

namespace lumoxa {
namespace {

constexpr size_t kIndentation = 2;  // spaces a level
constexpr int kSignificantDigits = 6;
constexpr char32_t kFirstPrintable = 0x20;

void appendEscaped(std::string& text, char32_t c) {
    constexpr char kHex[] = "0123456789abcdef";
    if (c == '"' || c == '\\') {
        text += {'\\', static_cast<char>(c)};
    } else if (c == '\n') {
        text += "\\n";
    } else if (c == '\t') {
        text += "\\t";
    } else if (c < kFirstPrintable) {
        text += {'\\', 'u', '0', '0', kHex[c >> 4], kHex[c & 0xF]};
    } else {
        appendUtf8(text, c);
    }
}

}  // namespace

void JsonText::open(char bracket) {
    text_ += bracket;
    ++depth_;
    isFirst_ = true;
}

void JsonText::close(char bracket) {
    --depth_;
    if (!isFirst_) text_.append("\n").append(kIndentation * static_cast<size_t>(depth_), ' ');
    text_ += bracket;
    isFirst_ = false;
}

void JsonText::beginMember() {
    if (!isFirst_) text_ += ',';
    text_.append("\n").append(kIndentation * static_cast<size_t>(depth_), ' ');
    isFirst_ = false;
}

void JsonText::key(std::string_view name) {
    value(name);
    text_ += ": ";
}

void JsonText::value(std::string_view text) {
    text_ += '"';
    for (size_t at = 0; at < text.size();)
        appendEscaped(text_, nextCharacter(text, at));
    text_ += '"';
}

void JsonText::value(double number) {
    if (!std::isfinite(number)) return value(nullptr);
    char digits[32];  // sign, six digits, point, "e-308"
    const auto end = std::to_chars(digits, digits + sizeof digits, number,
                                   std::chars_format::general, kSignificantDigits);
    text_.append(digits, end.ptr);
}

}  // namespace lumoxa
