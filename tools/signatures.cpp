// SPDX-License-Identifier: Apache-2.0
#include "tools/signatures.h"

#include <array>

namespace lumoxa_tool {

std::string signatureText(uint32_t signature) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        const char character = static_cast<char>(signature >> shift & 0xFF);
        text += character >= 0x20 && character < 0x7F ? character : '?';
    }
    return text;
}

std::string quotedSignature(uint32_t signature) {
    std::string text(1, '\'');
    text += signatureText(signature);
    return text += '\'';
}

std::string spaceText(uint32_t space) {
    std::string text = signatureText(space);
    while (!text.empty() && text.back() == ' ')
        text.pop_back();
    return text;
}

std::string intentText(uint32_t intent) {
    static constexpr std::array kNames = {"perceptual", "relative", "saturation", "absolute"};
    return intent < kNames.size() ? kNames[intent] : std::to_string(intent);
}

}  // namespace lumoxa_tool
