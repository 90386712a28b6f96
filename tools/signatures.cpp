// SPDX-License-Identifier: Apache-2.0
#include "tools/signatures.h"

#include <array>
#include <iterator>

namespace lumoxa_tool {
namespace {

struct KindName {
    uint32_t kind;
    const char* name;
};

constexpr KindName kKindNames[] = {
    {kLut8, "lut8"},
    {kLut16, "lut16"},
    {kLutAToB, "lutAtoB"},
    {kLutBToA, "lutBtoA"},
    {fourCc("TrcM"), "curves and matrix"},
    {fourCc("MatT"), "matrix and curves"},
    {fourCc("KtoL"), "gray tone tables KtoL"},
    {fourCc("LtoK"), "gray tone tables LtoK"},
};

struct SpaceChannels {
    uint32_t space;
    int channels;
};

// Colour space signatures of ICC.1, 7.2.6; the nCLR family is read off its first character.
constexpr SpaceChannels kSpaceChannels[] = {
    {kGray, 1},          {kRgb, 3},           {kCmyk, 4},          {fourCc("CMY "), 3},
    {fourCc("Lab "), 3}, {fourCc("XYZ "), 3}, {fourCc("Luv "), 3}, {fourCc("YCbr"), 3},
    {fourCc("Yxy "), 3}, {fourCc("HSV "), 3}, {fourCc("HLS "), 3},
};

int hexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    return digit >= 'A' && digit <= 'F' ? digit - 'A' + 10 : 0;
}

}  // namespace

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

std::string kindText(uint32_t kind) {
    for (const KindName& entry : kKindNames) {
        if (entry.kind == kind) return entry.name;
    }
    return kind == 0 ? "no conversion" : signatureText(kind);
}

std::string intentText(uint32_t intent) {
    static constexpr std::array kNames = {"perceptual", "relative", "saturation", "absolute"};
    return intent < kNames.size() ? kNames[intent] : std::to_string(intent);
}

int channelsOfSpace(uint32_t space) {
    for (const SpaceChannels& entry : kSpaceChannels) {
        if (entry.space == space) return entry.channels;
    }
    const bool namedByCount = (space & 0xFFFFFF) == (fourCc("?CLR") & 0xFFFFFF);
    return namedByCount ? hexDigit(static_cast<char>(space >> 24)) : 0;
}

}  // namespace lumoxa_tool
