// SPDX-License-Identifier: Apache-2.0
#include "lut/lut_tag.h"

namespace lumoxa {

using namespace lut_layout;

uint32_t TagView::curves(LutElement set) const {
    const bool onInputSide = (type() == kTypeLutAToB) == (set == kACurves);
    return onInputSide ? inputs() : outputs();
}

uint64_t TagView::curveSize(uint32_t at) const {
    if (u32(at) == kTypeCurve) return kCurveData + uint64_t{2} * u32(at + kCurveCount);
    return kCurveData + uint64_t{4} * parametricCount(u16(at + kParaType));
}

namespace {

/// Bytes that an element occupies, from `begin` to before `end`.
struct Extent {
    uint64_t begin = 0;
    uint64_t end = 0;
};

int checkChannels(const TagView& tag) {
    const bool possible = tag.inputs() >= 1 && tag.outputs() >= 1 &&
                          tag.inputs() <= static_cast<uint32_t>(kMaxInputs);
    return possible ? icSuccess : icErrTagType;
}

int checkLut8(const TagView& tag, uint32_t size) {
    if (size < kLut8Tables) return icErrRead;
    const uint32_t grid = tag.u8(kGrid);
    if (checkChannels(tag) != icSuccess || grid < 2) return icErrTagType;
    const uint64_t needed = kLut8Tables + uint64_t{kLut8Entries} * (tag.inputs() + tag.outputs()) +
                            clutEntries(tag.inputs(), grid, tag.outputs());
    return needed <= size ? icSuccess : icErrRead;
}

int checkLut16(const TagView& tag, uint32_t size) {
    if (size < kLut16Tables) return icErrRead;
    const uint32_t grid = tag.u8(kGrid);
    const uint32_t inputEntries = tag.u16(kInputEntries);
    const uint32_t outputEntries = tag.u16(kOutputEntries);
    if (checkChannels(tag) != icSuccess || grid < 2 || inputEntries < 2 || outputEntries < 2) {
        return icErrTagType;
    }
    const uint64_t words = uint64_t{inputEntries} * tag.inputs() +
                           uint64_t{outputEntries} * tag.outputs() +
                           clutEntries(tag.inputs(), grid, tag.outputs());
    return kLut16Tables + 2 * words <= size ? icSuccess : icErrRead;
}

int checkCurves(const TagView& tag, uint32_t size, LutElement set, Extent& extent) {
    uint64_t at = extent.begin;
    for (uint32_t i = 0; i < tag.curves(set); ++i) {
        if (at + kCurveData > size) return icErrRead;
        const auto start = static_cast<uint32_t>(at);
        const uint32_t type = tag.u32(start);
        const bool known = type == kTypeCurve || (type == kTypeParametric &&
                                                  parametricCount(tag.u16(start + kParaType)) != 0);
        if (!known) return icErrTagType;
        extent.end = at + tag.curveSize(start);
        if (extent.end > size) return icErrRead;
        at = (extent.end + 3) & ~uint64_t{3};
    }
    return icSuccess;
}

int checkClut(const TagView& tag, uint32_t size, Extent& extent) {
    if (extent.begin + kClutData > size) return icErrRead;
    const auto start = static_cast<uint32_t>(extent.begin);
    const uint32_t precision = tag.u8(start + kClutPrecision);
    if (precision != 1 && precision != 2) return icErrTagType;
    for (uint32_t i = 0; i < tag.inputs(); ++i) {
        if (tag.u8(start + i) < 2) return icErrTagType;
    }
    const auto gridOf = [&](uint32_t i) { return tag.u8(start + i); };
    extent.end =
        extent.begin + kClutData + precision * boundedProduct(tag.inputs(), gridOf, tag.outputs());
    return extent.end <= size ? icSuccess : icErrRead;
}

int checkElement(const TagView& tag, uint32_t size, LutElement element, Extent& extent) {
    extent.begin = extent.end = tag.offset(element);
    if (extent.begin == 0) return icSuccess;
    if (extent.begin < kHeaderSize) return icErrTagType;
    switch (element) {
        case kMatrixElement:
            extent.end = extent.begin + 4 * kMatrixAndOffsets;
            return extent.end <= size ? icSuccess : icErrRead;
        case kClutElement:
            return checkClut(tag, size, extent);
        default:
            return checkCurves(tag, size, element, extent);
    }
}

/// Curve sets may share their bytes when they begin together (identity curves often do). Any other
/// overlap would be converted to host order twice.
bool mayShare(LutElement a, LutElement b, const Extent& x, const Extent& y) {
    const auto isCurveSet = [](LutElement e) { return e != kMatrixElement && e != kClutElement; };
    const bool apart = x.end <= y.begin || y.end <= x.begin;
    return apart || (isCurveSet(a) && isCurveSet(b) && x.begin == y.begin);
}

int checkLutAB(const TagView& tag, uint32_t size) {
    if (size < kHeaderSize) return icErrRead;
    if (checkChannels(tag) != icSuccess) return icErrTagType;
    Extent extents[kLutElements];
    for (int i = 0; i < kLutElements; ++i) {
        const auto element = static_cast<LutElement>(i);
        if (const int code = checkElement(tag, size, element, extents[i])) return code;
        for (int j = 0; j < i; ++j) {
            if (!mayShare(element, static_cast<LutElement>(j), extents[i], extents[j])) {
                return icErrTagType;
            }
        }
    }
    return icSuccess;
}

}  // namespace

int checkLutTag(const icTagBase* tag, uint32_t size) {
    if (size < sizeof(icTagBase)) return icErrRead;
    const TagView view{reinterpret_cast<const uint8_t*>(tag), true};
    switch (view.type()) {
        case kTypeLut8:
            return checkLut8(view, size);
        case kTypeLut16:
            return checkLut16(view, size);
        case kTypeLutAToB:
        case kTypeLutBToA:
            return checkLutAB(view, size);
        default:
            return icErrTagType;
    }
}

}  // namespace lumoxa
