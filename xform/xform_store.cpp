// SPDX-License-Identifier: Apache-2.0
//
// Storing a LUT transform as a tag of a profile.
#include <cstring>
#include <limits>
#include <optional>
#include <utility>

#include "base/entry_guard.h"
#include "lumoxa/xform.h"
#include "lut/lut_tag.h"
#include "profile/tag_edit.h"
#include "xform/tag_choice.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

using namespace lut_layout;

// What a new entry adds to the size field here is 24, twice what editing a tag adds. Saving works
// the size out anew.
constexpr uint32_t kStoredEntryGrowth = 24;

/// Sizes of a LUT tag in bytes: by its own layout, and as it is stored, with zeros behind it.
struct TagSize {
    uint64_t layout;
    uint64_t stored;
};

std::optional<TagSize> tagSize(const icXformInternal& xform) {
    if (xform.kind != kTypeLut8 && xform.kind != kTypeLut16) return std::nullopt;
    const TagView tag{reinterpret_cast<const uint8_t*>(xform.tagData.get()), false};
    const uint64_t clut = clutEntries(tag.inputs(), tag.u8(kGrid), tag.outputs());
    if (xform.kind == kTypeLut8) {
        const uint64_t layout =
            kLut8Tables + uint64_t{kLut8Entries} * (tag.inputs() + tag.outputs()) + clut;
        return TagSize{layout, layout + 3};
    }
    const uint64_t words = clut + uint64_t{tag.u16(kOutputEntries)} * tag.outputs() +
                           uint64_t{tag.u16(kInputEntries)} * tag.inputs();
    return TagSize{kLut16Tables + 2 * words, kLut16Tables + 2 * words + 2};
}

/// lut16 is not narrowed to lut8, nor the other way round.
bool contradicts(icTagTypeSignature asked, uint32_t kind) {
    return (asked == kTypeLut8 && kind == kTypeLut16) || (asked == kTypeLut16 && kind == kTypeLut8);
}

/// The tag's bytes in file byte order.
CHeapPtr<uint8_t> fileOrderTag(const icXformInternal& xform, const TagSize& size) {
    auto bytes = requireZeroed<uint8_t>(static_cast<size_t>(size.stored));
    std::memcpy(bytes.get(), xform.tagData.get(), static_cast<size_t>(size.layout));
    icUnSwapLut(reinterpret_cast<icTagBase*>(bytes.get()));
    swapInPlace<icTagTypeSignature>(bytes.get(), 1);
    return bytes;
}

int store(icProfileInternal& profile, icTagSignature signature, const icXformInternal& xform,
          const TagSize& size) {
    // A tag's size is a 32-bit number.
    if (size.stored > std::numeric_limits<uint32_t>::max()) return icErrNoMemory;
    storeTag(profile, signature, fileOrderTag(xform, size), static_cast<uint32_t>(size.stored),
             kStoredEntryGrowth);
    return icSuccess;
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icXformSet(icProfile_t handle, icTagTypeSignature type, icRenderingIntent intent,
               icTransType transType, icXform_t xform) {
    if (handle == nullptr) return icErrInvalid;
    if (xform == nullptr) return icErrXformKind;
    icProfileInternal* profile = editableProfile(handle);
    if (profile == nullptr) return icErrInvalid;
    const std::optional<TagSize> size = tagSize(*xform);
    if (!size || contradicts(type, xform->kind)) return icErrXformKind;
    const icTagSignature signature = lutTagOf(intent, transType);
    if (signature == 0) return icErrInvalid;
    return guarded([&] { return store(*profile, signature, *xform, *size); });
}
