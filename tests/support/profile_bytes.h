// SPDX-License-Identifier: Apache-2.0
//
// Synthetic profile images and tag data, built byte by byte in file order.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumoxa_test {

using Bytes = std::vector<uint8_t>;

void put32(Bytes& out, size_t at, uint32_t value);
/// The four bytes at a position, which have to be there.
uint32_t numberAt(const Bytes& bytes, size_t at);
/// Four bytes, as part of a tag that is written as text.
std::string bigEndian(uint32_t value);

/// 'curv' data: no entries is the identity, one is a gamma in u8Fixed8, more are a table.
Bytes curveTag(const std::vector<uint16_t>& entries);
/// 'para' data: function type 0..4 with its 1, 3, 4, 5 or 7 parameters.
Bytes parametricTag(uint32_t function, const std::vector<double>& parameters);
Bytes xyzTag(double X, double Y, double Z);

/// Content of a lut8 or lut16 tag. Tables left empty are filled in: curves with a ramp, the CLUT
/// so that output channel o repeats input channel o % inputs.
struct LutContent {
    uint32_t inputs = 3, outputs = 3, grid = 2;
    uint32_t inEntries = 256, outEntries = 256;  // lut8 always has 256
    std::vector<double> matrix = {1, 0, 0, 0, 1, 0, 0, 0, 1};
    std::vector<uint16_t> inTables, clut, outTables;  // 16-bit values; lut8 stores the upper bytes
};
Bytes lut8Tag(const LutContent& content);
Bytes lut16Tag(const LutContent& content);

/// Content of a lutAToB or lutBToA tag; what is left empty is absent (its offset is 0). The curves
/// are whole 'curv' or 'para' data. A grid without CLUT values gets the CLUT of LutContent.
struct LutABContent {
    uint32_t inputs = 3, outputs = 3, precision = 2;  // bytes of a CLUT value
    std::vector<Bytes> aCurves, mCurves, bCurves;
    std::vector<double> matrix;  // 12 numbers
    std::vector<uint8_t> grid;   // one count per input
    std::vector<uint16_t> clut;
};
Bytes lutAToBTag(const LutABContent& content);
Bytes lutBToATag(const LutABContent& content);

/// A profile image: header with usual defaults, then the tags in the order added, 4-byte aligned.
class ProfileBytes {
  public:
    explicit ProfileBytes(const std::string& deviceClass = "mntr",
                          const std::string& colorSpace = "RGB ", const std::string& pcs = "XYZ ");
    ProfileBytes& addTag(const std::string& signature, Bytes data);
    Bytes image() const;

  private:
    Bytes header_;
    std::vector<std::pair<std::string, Bytes>> tags_;
};

/// A matrix/TRC profile of one curve for all channels, or three. Its colorants are those of sRGB,
/// or make the matrix one, so that 16-bit results are the curve tables themselves.
ProfileBytes rgbProfile(const std::vector<Bytes>& curves, const std::string& deviceClass,
                        bool unitMatrix = false);

/// A small display profile with three colorants, then three curves.
Bytes smallRgbProfile();

}  // namespace lumoxa_test
