// SPDX-License-Identifier: Apache-2.0
//
// The record behind a transform handle, its life, and the owner that library code holds it by.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <variant>

#include "base/c_heap.h"
#include "lumoxa/evaluate.h"
#include "lumoxa/gray.h"
#include "lumoxa/xform.h"
#include "lut/simplex_schemes.h"
#include "profile/signatures.h"

namespace lumoxa {

// Kinds of transform beside the four LUT tag types.
inline constexpr uint32_t kKindTrcMatrix = fourcc("TrcM");
inline constexpr uint32_t kKindMatrixTrc = fourcc("MatT");
inline constexpr uint32_t kKindGrayToLab = fourcc("KtoL");
inline constexpr uint32_t kKindLabToGray = fourcc("LtoK");
inline constexpr uint32_t kKindLabToXyz = fourcc("LtoX");
inline constexpr uint32_t kKindXyzToLab = fourcc("XtoL");
inline constexpr uint32_t kKindAbsolute = fourcc("AbsX");
inline constexpr uint32_t kKindTableStage = fourcc("Flar");
inline constexpr uint32_t kKindPerceptualToRelative = fourcc("PtoR");
inline constexpr uint32_t kKindRelativeToPerceptual = fourcc("RtoP");

// States of stages that only chains have.
struct Flare_t;
struct WhiteScaling;
struct icBlackWhite_t;

/// What a transform is evaluated from, of the type that its kind asks for. A LUT kind has one of
/// three: tetrahedral for three inputs, pentahedral for four, plain otherwise. States are immutable
/// and may have several owners.
class XformState {
  public:
    XformState() = default;
    template <class T>
    explicit XformState(std::shared_ptr<const T> state) : state_(std::move(state)) {}

    explicit operator bool() const { return get() != nullptr; }
    /// The state as kernels take it; null without one.
    const void* get() const {
        return std::visit([](const auto& s) { return static_cast<const void*>(s.get()); }, state_);
    }
    /// The state when it is of that very type, else null.
    template <class T>
    const T* as() const {
        const auto* held = std::get_if<std::shared_ptr<const T>>(&state_);
        return held == nullptr ? nullptr : held->get();
    }

  private:
    template <class... States>
    using OneOf = std::variant<std::shared_ptr<const States>...>;

    OneOf<icLutState_t, icLutTetraState_t, icLutPentaState_t, trcMatrix_t, GrayConv_t, XyzToLab_t,
          LabToXyz_t, Flare_t, WhiteScaling, icBlackWhite_t>
        state_;
};

}  // namespace lumoxa

/// What a handle stands for: a conversion, what it is made from and what it is evaluated from.
/// Immutable once built, except for the count and `blackWhite`, which one thread at a time changes.
struct icXformInternal {
    uint32_t kind = 0;
    int32_t refCount = 1;
    uint16_t pcsWhite[3] = {};    // XYZ with 1.0 = 32768
    uint16_t mediaWhite[3] = {};  // likewise; the connection-space white when the profile has none
    uint32_t intent = 0;
    uint32_t transType = 0;
    uint32_t inSpace = 0;
    uint32_t outSpace = 0;
    uint32_t deviceClass = 0;
    uint32_t inChannels = 0;
    uint32_t outChannels = 0;
    uint32_t gridPoints = 0;  // of one dimension: the largest where they differ
    uint32_t inTableEntries = 0;
    uint32_t outTableEntries = 0;
    lumoxa::CHeapPtr<icTagBase> tagData;  // LUT kinds: the tag in host byte order, which the state
                                          // points into
    lumoxa::XformState state;
    // Of a device, once a stage has asked for it.
    std::shared_ptr<const lumoxa::icBlackWhite_t> blackWhite;
};

namespace lumoxa {

struct XformRelease {
    void operator()(icXformInternal* xform) const noexcept { icXformFree(xform); }
};
using XformPtr = std::unique_ptr<icXformInternal, XformRelease>;

/// A record with one holder. Throws std::bad_alloc.
XformPtr newXform();

/// The three evaluation states of a LUT kind.
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
    if (const auto* tetra = xform.state.as<icLutTetraState_t>()) return tetra;
    if (const auto* penta = xform.state.as<icLutPentaState_t>()) return penta;
    return xform.state.as<icLutState_t>();
}

/// Handles are pointers to const so that callers can't write through them; the library made every
/// record writable.
inline icXformInternal* writable(icXform_t xform) {
    return const_cast<icXformInternal*>(xform);
}

}  // namespace lumoxa
