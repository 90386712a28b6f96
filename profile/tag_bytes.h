// SPDX-License-Identifier: Apache-2.0
//
// Tag data for profiles that are made here, in file byte order: each function gives a whole tag,
// which begins with its type.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace lumoxa {

using TagBytes = std::vector<uint8_t>;

/// XYZ in s15Fixed16.
using FixedXyz = std::array<int32_t, 3>;

/// D50 of the connection space, X = 0.9642, Y = 1, Z = 0.8249, as headers carry it (ICC.1:2010,
/// 7.2.16).
inline constexpr FixedXyz kD50Xyz = {63190, 65536, 54061};

inline constexpr double kFixedOne = 65536.0;

/// The nearest s15Fixed16 number. @throws FaultError where there is none
int32_t toFixed16(double value);

void put16(TagBytes& bytes, uint32_t value);  ///< the lower 16 bits
void put32(TagBytes& bytes, uint32_t value);
void putFixed(TagBytes& bytes, std::span<const int32_t> numbers);

/// The type signature and the four zero bytes after it.
TagBytes startOfTag(uint32_t type);

/// XYZType of one colour.
TagBytes xyzTag(const FixedXyz& xyz);
/// s15Fixed16ArrayType of a matrix, row by row.
TagBytes matrixTag(const std::array<FixedXyz, 3>& rows);
/// curveType: no entries are the identity, one is a gamma in u8Fixed8, more are a table.
TagBytes curveTag(std::span<const uint16_t> entries);
/// parametricCurveType: a function, 0..4, with its parameters g, a, b ...
TagBytes parametricTag(uint32_t function, std::span<const double> parameters);
/// textDescriptionType of an ASCII text, with neither Unicode nor ScriptCode
/// (ICC.1:2001-04, 6.5.17).
TagBytes descriptionTag(std::string_view ascii);
/// textType of an ASCII text.
TagBytes textTag(std::string_view ascii);
/// multiLocalizedUnicodeType with one record, American English.
/// @param text  UTF-8; each byte of what is not becomes U+FFFD
TagBytes localizedTag(std::string_view text);

}  // namespace lumoxa
