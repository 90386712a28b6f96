// SPDX-License-Identifier: Apache-2.0
//
// Layout of the four LUT tag types in a profile (ICC.1:2001-04, 6.5.7 and 6.5.8; ICC.1:2010, 10.10
// and 10.11), the check that makes a tag from outside safe to use, and the byte-order conversion.
//
// Tags are passed with the type signature in host order, as the tag readers leave them.
#pragma once

#include <cstdint>

#include "base/byte_order.h"
#include "lumoxa/types.h"
#include "profile/signatures.h"

namespace lumoxa {

/// Offsets within a tag, fixed by the file format.
namespace lut_layout {
inline constexpr uint32_t kInputs = 8;
inline constexpr uint32_t kOutputs = 9;
// lut8 and lut16
inline constexpr uint32_t kGrid = 10;
inline constexpr uint32_t kMatrix = 12;
inline constexpr uint32_t kMatrixEntries = 9;
inline constexpr uint32_t kLut8Tables = 48;
inline constexpr uint32_t kLut8Entries = 256;
inline constexpr uint32_t kInputEntries = 48;
inline constexpr uint32_t kOutputEntries = 50;
inline constexpr uint32_t kLut16Tables = 52;
// lutAToB and lutBToA
inline constexpr uint32_t kOffsets = 12;
inline constexpr uint32_t kHeaderSize = 32;
inline constexpr uint32_t kMatrixAndOffsets = 12;  // s15Fixed16 values of a matrix element
inline constexpr uint32_t kClutPrecision = 16;     // within the CLUT, after 16 grid-point bytes
inline constexpr uint32_t kClutData = 20;          // within the CLUT
// curves
inline constexpr uint32_t kCurveCount = 8;
inline constexpr uint32_t kParaType = 8;
inline constexpr uint32_t kCurveData = 12;
}  // namespace lut_layout

/// Inputs that a transform can have at most: the grid counts of a lutAToB CLUT are 16 bytes.
inline constexpr int kMaxInputs = 16;
/// Outputs that a tag can declare at most: the count is a byte.
inline constexpr int kMaxOutputs = 255;

/// The elements of a lutAToB or lutBToA tag, in the order of their offsets.
enum LutElement { kBCurves, kMatrixElement, kMCurves, kClutElement, kACurves, kLutElements };

constexpr bool isLutType(uint32_t type) {
    return type == kTypeLut8 || type == kTypeLut16 || type == kTypeLutAToB || type == kTypeLutBToA;
}

/// Parameters of a parametric curve by function type, or 0 for an unknown type
/// (parametricCurveType of ICC.1:2010).
constexpr uint32_t parametricCount(uint32_t functionType) {
    constexpr uint32_t kCounts[] = {1, 3, 4, 5, 7};
    return functionType < 5 ? kCounts[functionType] : 0;
}

/// Reads a tag's fields in either byte order.
struct TagView {
    const uint8_t* bytes;
    bool fileOrder;

    uint32_t type() const { return loadRaw<uint32_t>(bytes); }
    uint32_t u8(uint32_t at) const { return bytes[at]; }
    uint32_t u16(uint32_t at) const {
        return fileOrder ? loadFileOrder<uint16_t>(bytes + at) : loadRaw<uint16_t>(bytes + at);
    }
    uint32_t u32(uint32_t at) const {
        return fileOrder ? loadFileOrder<uint32_t>(bytes + at) : loadRaw<uint32_t>(bytes + at);
    }
    uint32_t inputs() const { return u8(lut_layout::kInputs); }
    uint32_t outputs() const { return u8(lut_layout::kOutputs); }
    /// Offset of an element of a lutAToB or lutBToA tag; 0 when it is absent.
    uint32_t offset(LutElement element) const {
        return u32(lut_layout::kOffsets + 4 * static_cast<uint32_t>(element));
    }
    /// Curves of a set: A curves stand on the device side of the grid, B and M curves on the other.
    uint32_t curves(LutElement set) const;
    /// Bytes of the curve at `at`, signature to last entry; it must be of a known type.
    uint64_t curveSize(uint32_t at) const;
    /// Start of the curve after the one at `at`.
    uint32_t nextCurve(uint32_t at) const {
        return static_cast<uint32_t>((at + curveSize(at) + 3) & ~uint64_t{3});
    }
};

/// product of `n` factors `factorOf(i)` times `last`, or 2^40 when it is larger than that.
template <class FactorOf>
uint64_t boundedProduct(uint32_t n, FactorOf factorOf, uint64_t last) {
    constexpr uint64_t kBound = uint64_t{1} << 40;
    uint64_t product = last;
    for (uint32_t i = 0; i < n; ++i) {
        product *= factorOf(i);  // below 2^40 x 2^8
        if (product > kBound) return kBound;
    }
    return product;
}

/// Entries of the grid of a lut8 or lut16 tag, or 2^40 when there are more.
inline uint64_t clutEntries(uint32_t inputs, uint32_t grid, uint32_t outputs) {
    return boundedProduct(
        inputs, [grid](uint32_t) { return grid; }, outputs);
}

/// Whether a LUT tag in file byte order may be swapped and used: icErrTagType when it is no LUT tag
/// or declares what no transform can have, icErrRead when it has fewer bytes than it declares.
int checkLutTag(const icTagBase* tag, uint32_t size);

}  // namespace lumoxa
