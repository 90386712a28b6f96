// SPDX-License-Identifier: Apache-2.0
#include "combine/chain.h"

#include <algorithm>
#include <new>

#include "eval/chain_kernels.h"
#include "lumoxa/combine.h"

namespace lumoxa {
namespace {

bool isAbsolute(const icXformInternal& xform) {
    return xform.intent == icAbsoluteColorimetric;
}

/// What a white-scaling stage does, and the intent that its record bears: a stage that has left an
/// absolute result behind is how the next transform of a chain knows to bring it back.
enum class AbsoluteMode : uint32_t { kToRelative = 1, kToAbsolute = 3 };

/// A stage that scales XYZ by to / from.
XformPtr makeAbsoluteStage(const uint16_t* from, const uint16_t* to, AbsoluteMode mode) {
    XformPtr stage = newXform();
    stage->kind = kKindAbsolute;
    std::copy_n(to, 3, stage->pcsWhite);
    std::copy_n(from, 3, stage->mediaWhite);
    stage->intent = static_cast<uint32_t>(mode);
    stage->inSpace = stage->outSpace = kSpaceXyz;
    stage->inChannels = stage->outChannels = 3;
    stage->state = XformState(std::make_shared<const WhiteScaling>(
        WhiteScaling{{from[0], from[1], from[2]}, {to[0], to[1], to[2]}}));
    return stage;
}

bool fits(const icXformInternal& left, const icXformInternal& right) {
    if (left.outChannels != right.inChannels) return false;
    return isConnectionSpace(left.outSpace) ? isConnectionSpace(right.inSpace)
                                            : left.outSpace == right.inSpace;
}

class Expansion {
  public:
    explicit Expansion(ExpandedChain& chain) : chain_(chain) {}

    /// Appends a transform with what must stand between it and the stage before.
    void append(const icXformInternal& t) {
        if (!chain_.stages.empty()) bridgeTo(t);
        chain_.stages.push_back(&t);
        chain_.maxGrid = std::max(chain_.maxGrid, t.gridPoints);
        chain_.maxChannels = std::max({chain_.maxChannels, t.inChannels, t.outChannels});
    }

    /// Makes the result of the last transform absolute, which takes XYZ. `mediaWhite` is the white
    /// that the result was relative to.
    void makeAbsolute(const uint16_t* mediaWhite) {
        if (last().outSpace == kSpaceLab) {
            insert(icGetLabToXyzXform(last().pcsWhite, last().mediaWhite, false));
        }
        if (last().outSpace == kSpaceXyz) {
            insert(makeAbsoluteStage(last().pcsWhite, mediaWhite, AbsoluteMode::kToAbsolute));
        }
    }

  private:
    const icXformInternal& last() const { return chain_.last(); }

    void bridgeTo(const icXformInternal& t) {
        if (isAbsolute(last()) && last().outSpace == kSpaceXyz) {
            insert(makeAbsoluteStage(t.mediaWhite, t.pcsWhite, AbsoluteMode::kToRelative));
        }
        if (t.inSpace == kSpaceLab && last().outSpace == kSpaceXyz) {
            insert(icGetXyzToLabXform(last().pcsWhite, last().mediaWhite));
        } else if (t.inSpace == kSpaceXyz && last().outSpace == kSpaceLab) {
            insert(icGetLabToXyzXform(last().pcsWhite, last().mediaWhite, false));
        }
    }

    void insert(icXformInternal* made) {
        if (made == nullptr) throw std::bad_alloc();
        insert(XformPtr(made));
    }
    void insert(XformPtr stage) {
        chain_.inserted.push_back(std::move(stage));
        chain_.stages.push_back(chain_.inserted.back().get());
    }

    ExpandedChain& chain_;
};

}  // namespace

bool isChain(int count, const icXform_t* chain) {
    if (count < 1 || chain == nullptr) return false;
    return std::none_of(chain, chain + count, [](icXform_t xform) { return xform == nullptr; });
}

bool stagesFit(int count, const icXform_t* chain, int* failingLink) {
    for (int i = 0; i + 1 < count; ++i) {
        if (fits(*chain[i], *chain[i + 1])) continue;
        if (failingLink != nullptr) *failingLink = i + 1;
        return false;
    }
    return true;
}

ExpandedChain expandChain(int count, const icXform_t* chain) {
    ExpandedChain result;
    Expansion expansion(result);
    for (int i = 0; i < count; ++i) {
        expansion.append(*chain[i]);
        // A chain ends in what its last transform gives; only a lone one is its own source.
        const bool isSource = i == 0 || i < count - 1;
        if (isSource && isAbsolute(*chain[i])) expansion.makeAbsolute(chain[i]->mediaWhite);
    }
    return result;
}

}  // namespace lumoxa
