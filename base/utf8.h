// SPDX-License-Identifier: Apache-2.0
//
// UTF-8, character by character (RFC 3629): text that comes in is decoded without trust, text that
// goes out is always well-formed.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lumoxa {

/// Stands for what is no character.
inline constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isSurrogate(char32_t c) {
    return c >= 0xD800 && c < 0xE000;
}

/// The character at `text[at]`, and moves `at` behind it. U+FFFD and one byte further where no
/// valid sequence begins: overlong forms, halves of surrogate pairs and what lies beyond U+10FFFF
/// are not valid.
/// @param at  below text.size()
char32_t nextCharacter(std::string_view text, size_t& at);

/// Appends `c`, or U+FFFD for what is no character.
void appendUtf8(std::string& text, char32_t c);

/// Whether all of `text` is valid.
bool isUtf8(std::string_view text);

}  // namespace lumoxa
