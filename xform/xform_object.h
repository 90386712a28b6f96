// SPDX-License-Identifier: Apache-2.0
//
// The record behind a transform handle, its life, and the owner that library code holds it by.
#pragma once

#include <cstdint>
#include <memory>

#include "lumoxa/xform.h"
#include "lut/penta.h"
#include "lut/tetra.h"
#include "profile/signatures.h"
#include "xform/black_white.h"

namespace lumoxa {

// Kinds of transform beside the four LUT tag types.
inline constexpr uint32_t kKindTrcMatrix = fourcc("TrcM");
inline constexpr uint32_t kKindMatrixTrc = fourcc("MatT");
inline constexpr uint32_t kKindGrayToLab = fourcc("KtoL");
inline constexpr uint32_t kKindLabToGray = fourcc("LtoK");
inline constexpr uint32_t kKindLabToXyz = fourcc("LtoX");
inline constexpr uint32_t kKindXyzToLab = fourcc("XtoL");
inline constexpr uint32_t kKindAbsolute = fourcc("AbsX");
inline constexpr uint32_t kKindFlare = fourcc("Flar");
inline constexpr uint32_t kKindPerceptualToRelative = fourcc("PtoR");
inline constexpr uint32_t kKindRelativeToPerceptual = fourcc("RtoP");

}  // namespace lumoxa

/// One zeroed block of the C heap. A LUT kind has exactly one of the three states: tetrahedral for
/// three inputs, pentahedral for four, plain otherwise. States are immutable; `state` is released
/// by `releaseState`, which whoever sets a state sets with it, so every kind is released the same
/// way.
struct icXformInternal {
    uint32_t kind;
    int32_t refCount;
    uint16_t pcsWhite[3];    // XYZ with 1.0 = 32768
    uint16_t mediaWhite[3];  // likewise; the connection-space white when the profile has none
    uint32_t intent;
    uint32_t transType;
    uint32_t inSpace;
    uint32_t outSpace;
    uint32_t deviceClass;
    uint32_t inChannels;
    uint32_t outChannels;
    uint32_t gridPoints;  // of one dimension: the largest where they differ
    uint32_t inTableEntries;
    uint32_t outTableEntries;
    icTagBase* tagData;  // LUT kinds: the tag in host byte order, C heap
    void* state;
    lumoxa::icLutTetraState_t* tetraState;
    lumoxa::icLutPentaState_t* pentaState;
    void (*releaseState)(void* state);
    lumoxa::icBlackWhite_t* blackWhite;  // of a device, once a stage has asked for it; counted
    uint64_t reserved;
};
static_assert(sizeof(icXformInternal) == 120);

namespace lumoxa {

struct XformRelease {
    void operator()(icXformInternal* xform) const noexcept { icXformFree(xform); }
};
using XformPtr = std::unique_ptr<icXformInternal, XformRelease>;

/// A zeroed record with one holder. Throws std::bad_alloc.
XformPtr newXform();

/// Gives `xform` a state on the C++ heap. `pointer` is what the kernels are handed: `State` itself
/// or a public record that it derives from.
template <class State, class Record = State>
void adoptState(icXformInternal& xform, std::unique_ptr<State> state) {
    if (xform.releaseState != nullptr) xform.releaseState(xform.state);
    xform.state = static_cast<Record*>(state.release());
    xform.releaseState = [](void* record) {
        delete static_cast<State*>(static_cast<Record*>(record));
    };
}

/// The three evaluation states of a LUT kind, in the order in which evaluation looks for them.
enum class LutStateKind { kTetra, kPenta, kPlain };

/// The state that suits a number of inputs.
constexpr LutStateKind lutStateKindFor(uint32_t inputs) {
    return inputs == 3   ? LutStateKind::kTetra
           : inputs == 4 ? LutStateKind::kPenta
                         : LutStateKind::kPlain;
}

/// Sets the state of that kind and the channel and table fields from `xform.tagData`, a checked tag
/// in host order, and the record's spaces. Throws std::bad_alloc.
void attachLutState(icXformInternal& xform, LutStateKind kind);

/// As above, with the state that suits the tag's inputs.
void attachLutState(icXformInternal& xform);

/// The LUT state of a LUT kind, whichever of the three it has; null when it has none.
inline const icLutState_t* lutStateOf(const icXformInternal& xform) {
    if (xform.tetraState != nullptr) return xform.tetraState;
    if (xform.pentaState != nullptr) return xform.pentaState;
    return isLutType(xform.kind) ? static_cast<const icLutState_t*>(xform.state) : nullptr;
}

/// Handles are pointers to const so that callers can't write through them; the library made every
/// record writable.
inline icXformInternal* writable(icXform_t xform) {
    return const_cast<icXformInternal*>(xform);
}

}  // namespace lumoxa
