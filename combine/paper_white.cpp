// SPDX-License-Identifier: Apache-2.0
#include "combine/paper_white.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "base/pcs_encoding.h"
#include "lut/table_lookup.h"

namespace lumoxa {
namespace {

constexpr float kLargestError = 0.02f * kSampleMax16;
constexpr int kFewestEntries = 17;  // a coarser table would change more than the highlights

/// Index of the grid point that holds the white of the first stage's input space.
std::optional<size_t> whitePoint(const icXformInternal& first, const Lut16View& lut) {
    const auto g = static_cast<size_t>(lut.grid());
    if (first.kind == kKindGrayToLab) return 0;  // of ink, unlike a gray that stands for light
    switch (first.inSpace) {
        case kSpaceCmyk:
            return 0;
        case kSpaceLab:
            if (lut.inputs() != 3) return std::nullopt;
            return g / 2 + ((g - 1) * g + g / 2) * g;
        case kSpaceGray:
        case kSpaceRgb:
            return clutEntries(static_cast<uint32_t>(lut.inputs()), static_cast<uint32_t>(g), 1) -
                   1;
        default:
            return std::nullopt;
    }
}

/// Paper white of a printer: no ink for CMYK, CMY, the n-colour spaces ('2CLR' .. 'FCLR') and the
/// channels of a gray print, full light for the additive spaces.
uint16_t paperOf(const icXformInternal& last) {
    constexpr uint32_t kNColour = fourcc("0CLR") & 0x00FFFFFF;
    const uint32_t space = last.outSpace;
    const bool inks = space == kSpaceCmyk || space == kSpaceCmy ||
                      (space & 0x00FFFFFF) == kNColour || last.kind == kKindLabToGray;
    return inks ? 0 : 65535;
}

/// One output table and the white's place in it. Positions count from the end that is nearer to
/// paper, so that the white comes first whichever way the table runs.
class WhiteInTable {
  public:
    WhiteInTable(uint16_t* table, int entries, uint16_t white, uint16_t paper)
        : table_(table), last_(entries - 1), paper_(paper) {
        const auto distance = [&](int i) { return std::abs(table[i] - paper); };
        fromTop_ = distance(last_) < distance(0);
        const float scale = static_cast<float>(last_) * (1.0f / kSampleMax16);
        value_ = lookUp(table, entries - 2, static_cast<float>(white) * scale);
        const float inward = static_cast<float>(white) + (fromTop_ ? -kSlack : kSlack);
        const float position = clipped(inward, kSampleMax16) * scale;
        position_ = fromTop_ ? static_cast<float>(last_) - position : position;
    }

    float error() const { return static_cast<float>(paper_) - value_; }
    bool exact() const { return roundWrapped<uint16_t>(value_) == paper_; }
    /// A white beside the far end can't be moved without that end.
    bool movable() const { return near() + 1 < last_; }

    void adjust() const {
        const int far = near() + 1;
        for (int i = 0; i < last_; ++i) {
            const float faded =
                i <= far ? 1.0f
                         : 1.0f - static_cast<float>(i - far) / static_cast<float>(last_ - far);
            uint16_t& v = entry(i);
            v = roundClipped<uint16_t>(static_cast<float>(v) + error() * faded);
        }
        entry(near()) = paper_;
        // Between the two entries around the white, what the far one adds must round to nothing.
        const float share = position_ - static_cast<float>(near());
        const int allowance =
            share > 0.0f ? static_cast<int>(std::min(kSampleMax16, kHarmless / share)) : 65535;
        entry(far) =
            static_cast<uint16_t>(paper_ == 0 ? std::min<int>(entry(far), allowance)
                                              : std::max<int>(entry(far), 65535 - allowance));
    }

  private:
    // The grid's white and the input's white can lie apart by rounding: grid nodes and scales are
    // not exact. The correction holds for values this much farther from paper than the white's.
    static constexpr float kSlack = 2.0f;
    static constexpr float kHarmless = 0.25f;

    int near() const { return static_cast<int>(position_); }
    uint16_t& entry(int i) const { return table_[fromTop_ ? last_ - i : i]; }

    uint16_t* table_;
    int last_;
    uint16_t paper_;
    bool fromTop_ = false;
    float value_ = 0.0f;
    float position_ = 0.0f;
};

}  // namespace

void adjustPaperWhite(const ExpandedChain& chain, const Lut16View& lut) {
    const bool printed = chain.last().deviceClass == kClassPrinter;
    if (chain.first().intent == icAbsoluteColorimetric || !printed) return;
    const std::optional<size_t> point = whitePoint(chain.first(), lut);
    if (!point || lut.outputEntries() < kFewestEntries) return;
    const uint16_t paper = paperOf(chain.last());
    const uint16_t* white = lut.clut() + *point * static_cast<size_t>(lut.outputs());
    std::vector<WhiteInTable> tables;
    for (int c = 0; c < lut.outputs(); ++c) {
        tables.emplace_back(lut.outputTable(c), lut.outputEntries(), white[c], paper);
        if (std::fabs(tables.back().error()) > kLargestError || !tables.back().movable()) return;
    }
    for (const WhiteInTable& table : tables) {
        if (!table.exact()) table.adjust();
    }
}

}  // namespace lumoxa
