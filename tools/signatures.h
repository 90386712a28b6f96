// SPDX-License-Identifier: Apache-2.0
//
// Four-character signatures as profiles hold them, and their words for people.
#pragma once

#include <cstdint>
#include <string>

namespace lumoxa_tool {

/// The number behind a signature: fourCc("acsp") is 0x61637370.
constexpr uint32_t fourCc(const char (&text)[5]) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i)
        value = value << 8 | static_cast<unsigned char>(text[i]);
    return value;
}

inline constexpr uint32_t kRgb = fourCc("RGB ");
inline constexpr uint32_t kCmyk = fourCc("CMYK");
inline constexpr uint32_t kGray = fourCc("GRAY");
inline constexpr uint32_t kGrayTag = fourCc("wzgd");  ///< patches of a gray device
inline constexpr uint32_t kProfileDescriptionTag = fourCc("desc");
inline constexpr uint32_t kCopyrightTag = fourCc("cprt");
inline constexpr uint32_t kLinkClass = fourCc("link");
/// Samples of a pixel of a gray device with companions, whatever its colour space says.
inline constexpr int kGrayPrintChannels = 3;

/// The four characters, with '?' for what can't be printed: "A2B0".
std::string signatureText(uint32_t signature);

/// The same between quotes: "'A2B0'".
std::string quotedSignature(uint32_t signature);

/// A colour space for people: "RGB", "Lab".
std::string spaceText(uint32_t space);

std::string intentText(uint32_t intent);

}  // namespace lumoxa_tool
