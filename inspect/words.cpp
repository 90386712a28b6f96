// SPDX-License-Identifier: Apache-2.0
#include "inspect/words.h"

#include <charconv>

namespace lumoxa::inspection {

std::string signatureText(uint32_t signature) {
    return quoted(signature).substr(1, 4);
}

std::string spaceText(uint32_t space) {
    std::string text = signatureText(space);
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string numberText(double value) {
    constexpr int kSignificantDigits = 6;
    char digits[32];  // sign, six digits, point, "e-308"
    const auto end = std::to_chars(digits, digits + sizeof digits, value,
                                   std::chars_format::general, kSignificantDigits);
    return {digits, end.ptr};
}

std::string hexText(uint64_t value, int digits) {
    std::string text = "0x";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        text += "0123456789abcdef"[value >> shift & 15];
    return text;
}

const char* deviceClassName(uint32_t deviceClass) {
    static constexpr Word kNames[] = {
        {fourcc("scnr"), "input device"},  {fourcc("mntr"), "display"},
        {fourcc("prtr"), "output device"}, {fourcc("link"), "device link"},
        {fourcc("spac"), "colour space"},  {fourcc("abst"), "abstract"},
        {fourcc("nmcl"), "named colours"},
    };
    return wordFor(kNames, deviceClass);
}

std::string intentText(uint32_t intent) {
    static constexpr Word kNames[] = {
        {0, "perceptual"}, {1, "relative"}, {2, "saturation"}, {3, "absolute"}};
    const char* const name = wordFor(kNames, intent);
    return name != nullptr ? name : std::to_string(intent);
}

std::string lutTypeText(uint32_t type) {
    static constexpr Word kNames[] = {{kTypeLut8, "lut8"},
                                      {kTypeLut16, "lut16"},
                                      {kTypeLutAToB, "lutAtoB"},
                                      {kTypeLutBToA, "lutBtoA"}};
    const char* const name = wordFor(kNames, type);
    return name != nullptr ? name : signatureText(type);
}

}  // namespace lumoxa::inspection
