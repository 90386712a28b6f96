// SPDX-License-Identifier: Apache-2.0
//
// Four-character signatures as host-order numbers.
#pragma once

#include <cstdint>

namespace lumoxa {

/// fourcc("acsp") is 0x61637370.
constexpr uint32_t fourcc(const char (&text)[5]) {
    uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
        value = value << 8 | static_cast<uint8_t>(text[i]);
    }
    return value;
}

inline constexpr uint32_t kMagic = fourcc("acsp");

// Colour spaces.
inline constexpr uint32_t kSpaceXyz = fourcc("XYZ ");
inline constexpr uint32_t kSpaceLab = fourcc("Lab ");
inline constexpr uint32_t kSpaceGray = fourcc("GRAY");
inline constexpr uint32_t kSpaceRgb = fourcc("RGB ");
inline constexpr uint32_t kSpaceCmyk = fourcc("CMYK");
inline constexpr uint32_t kSpaceCmy = fourcc("CMY ");

/// Connection spaces are the two whose 8-bit samples scale to 16 bits by 256 (full scale 0xFF00);
/// all other spaces scale by 257 (0xFF to 0xFFFF).
constexpr bool isConnectionSpace(uint32_t space) {
    return space == kSpaceXyz || space == kSpaceLab;
}

// Device classes.
inline constexpr uint32_t kClassDisplay = fourcc("mntr");
inline constexpr uint32_t kClassPrinter = fourcc("prtr");

// Tag types.
inline constexpr uint32_t kTypeCurve = fourcc("curv");
inline constexpr uint32_t kTypeParametric = fourcc("para");
inline constexpr uint32_t kTypeXyz = fourcc("XYZ ");
inline constexpr uint32_t kTypeText = fourcc("text");
inline constexpr uint32_t kTypeDescription = fourcc("desc");
inline constexpr uint32_t kTypeMultiLocalized = fourcc("mluc");
inline constexpr uint32_t kTypeLut8 = fourcc("mft1");
inline constexpr uint32_t kTypeLut16 = fourcc("mft2");
inline constexpr uint32_t kTypeLutAToB = fourcc("mAB ");
inline constexpr uint32_t kTypeLutBToA = fourcc("mBA ");

}  // namespace lumoxa
