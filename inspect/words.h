// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 writes as numbers and signatures, in words.
#pragma once

#include <cstdint>
#include <string>

#include "convert/profile_view.h"
#include "profile/signatures.h"

namespace lumoxa::inspection {

using engine::channelsOf;
using engine::quoted;

/// The four characters, with '?' for what can't be printed: "A2B0".
std::string signatureText(uint32_t signature);

/// The same without blanks at the end, for colour spaces: "RGB".
std::string spaceText(uint32_t space);

/// Six significant digits, whatever the locale: "0.9642".
std::string numberText(double value);

/// "0x0000ffff"
std::string hexText(uint64_t value, int digits);

/// The device class in words; null for one that ICC.1 doesn't list.
const char* deviceClassName(uint32_t deviceClass);

/// "perceptual"; the number of an intent that ICC.1 doesn't have.
std::string intentText(uint32_t intent);

/// The type of a LUT tag in words: "lut16".
std::string lutTypeText(uint32_t type);

/// A number or a signature and its words.
struct Word {
    uint32_t value;
    const char* text;
};

/// The words for `value` in a table; null where it isn't listed.
template <size_t Count>
const char* wordFor(const Word (&words)[Count], uint32_t value) {
    for (const Word& word : words) {
        if (word.value == value) return word.text;
    }
    return nullptr;
}

}  // namespace lumoxa::inspection
