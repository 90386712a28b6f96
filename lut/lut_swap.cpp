// SPDX-License-Identifier: Apache-2.0
//
// Conversion of a whole LUT tag between file and host byte order, in place. The counts and offsets
// inside are trusted: tags from outside pass checkLutTag() first.
#include <algorithm>

#include "lumoxa/xform.h"
#include "lut/lut_tag.h"

namespace lumoxa {
namespace {

using namespace lut_layout;

/// The words after a lut16 header. The grid's size is exact in 64-bit integers for every tag that
/// fits a profile.
size_t lut16Words(const TagView& hostOrder) {
    return size_t{hostOrder.u16(kInputEntries)} * hostOrder.inputs() +
           size_t{hostOrder.u16(kOutputEntries)} * hostOrder.outputs() +
           static_cast<size_t>(
               clutEntries(hostOrder.inputs(), hostOrder.u8(kGrid), hostOrder.outputs()));
}

void swapMatrix(uint8_t* tag) {
    swapInPlace<uint32_t>(tag + kMatrix, kMatrixEntries);
}

void swapCurve(uint8_t* curve) {
    swapInPlace<uint32_t>(curve, 1);
    if (loadRaw<uint32_t>(curve) == kTypeCurve) {
        swapInPlace<uint32_t>(curve + kCurveCount, 1);
        swapInPlace<uint16_t>(curve + kCurveData, loadRaw<uint32_t>(curve + kCurveCount));
    } else if (loadRaw<uint32_t>(curve) == kTypeParametric) {
        swapInPlace<uint16_t>(curve + kParaType, 1);
        swapInPlace<uint32_t>(curve + kCurveData,
                              parametricCount(loadRaw<uint16_t>(curve + kParaType)));
    }
}

/// Converts a curve set. Curves that an earlier set of the same offset has converted already are
/// walked over.
void swapCurves(uint8_t* tag, LutElement set) {
    const TagView view{tag, false};
    const uint32_t offset = view.offset(set);
    if (offset == 0) return;
    uint32_t converted = 0;
    for (const LutElement earlier : {kBCurves, kMCurves}) {
        if (earlier < set && view.offset(earlier) == offset) {
            converted = std::max(converted, view.curves(earlier));
        }
    }
    uint32_t at = offset;
    for (uint32_t i = 0; i < view.curves(set); ++i, at = view.nextCurve(at)) {
        if (i >= converted) swapCurve(tag + at);
    }
}

void swapClut(uint8_t* tag) {
    const TagView view{tag, false};
    const uint32_t clut = view.offset(kClutElement);
    if (clut == 0 || view.u8(clut + kClutPrecision) != 2) return;
    const auto gridOf = [&](uint32_t i) { return view.u8(clut + i); };
    swapInPlace<uint16_t>(tag + clut + kClutData, static_cast<size_t>(boundedProduct(
                                                      view.inputs(), gridOf, view.outputs())));
}

void swapLutAB(uint8_t* tag) {
    swapInPlace<uint32_t>(tag + kOffsets, kLutElements);
    const TagView view{tag, false};
    swapCurves(tag, kBCurves);
    if (const uint32_t matrix = view.offset(kMatrixElement)) {
        swapInPlace<uint32_t>(tag + matrix, kMatrixAndOffsets);
    }
    swapCurves(tag, kMCurves);
    swapClut(tag);
    swapCurves(tag, kACurves);
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

void icSwapLut(icTagBase* tag) {
    if (tag == nullptr) return;
    auto* bytes = reinterpret_cast<uint8_t*>(tag);
    switch (tag->sig) {
        case kTypeLut8:
            swapMatrix(bytes);
            break;
        case kTypeLut16:
            swapMatrix(bytes);
            swapInPlace<uint16_t>(bytes + kInputEntries, 2);
            swapInPlace<uint16_t>(bytes + kLut16Tables, lut16Words({bytes, false}));
            break;
        case kTypeLutAToB:
        case kTypeLutBToA:
            swapLutAB(bytes);
            break;
        default:
            break;
    }
}

void icUnSwapLut(icTagBase* tag) {
    if (tag == nullptr) return;
    auto* bytes = reinterpret_cast<uint8_t*>(tag);
    if (tag->sig != kTypeLut8 && tag->sig != kTypeLut16) return;
    swapMatrix(bytes);
    if (tag->sig == kTypeLut16) {
        swapInPlace<uint16_t>(bytes + kLut16Tables, lut16Words({bytes, false}));
        swapInPlace<uint16_t>(bytes + kInputEntries, 2);
    }
}
