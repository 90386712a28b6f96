// SPDX-License-Identifier: Apache-2.0
#include "tools/combined_chain.h"

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tools/grid_stage.h"
#include "tools/interrupt.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

constexpr int kFewestPoints = 3;  // of a grid that counts as one

// What a LUT tag with so many inputs is interpolated in.
Interpolation interpolationOf(uint32_t inputs) {
    if (inputs == 3) return Interpolation::kTetrahedral;
    return inputs == 4 ? Interpolation::kPentahedral : Interpolation::kMultilinear;
}

const char* interpolationText(Interpolation interpolation) {
    static constexpr const char* kNames[] = {"multilinear", "tetrahedral", "pentahedral"};
    return kNames[static_cast<size_t>(interpolation)];
}

int finestGrid(const std::vector<ChainLink>& chain) {
    int finest = 0;
    for (const ChainLink& link : chain)
        finest = std::max(finest, link.grid);
    return finest;
}

// The library describes no grid, so its rule is repeated here, for the report and to know what
// thinWideTable() has to replace (the tests compare it with stored links): the finest grid of the
// chain, bounded by 2^23 samples. Four inputs are interpolated in pentahedra, whose tables take 120
// times the room, where that costs less than half of the grid.
void describeGrid(const std::vector<ChainLink>& chain, int finest, Table& table) {
    constexpr int kSampleBudget = 8388608;
    constexpr int kPentahedralRoom = 120;
    const uint32_t inputs = table.desc.inChannels;
    const auto root = [&](int budget) { return static_cast<int>(std::pow(budget, 1.0 / inputs)); };
    uint32_t channels = 1;
    for (const ChainLink& link : chain)
        channels = std::max({channels, link.desc.inChannels, link.desc.outChannels});
    const int budget = kSampleBudget / static_cast<int>(channels);
    table.grid = std::min(std::max(finest, kFewestPoints), root(budget));
    table.interpolation = inputs == 4 ? Interpolation::kMultilinear : interpolationOf(inputs);
    if (inputs == 4 && root(budget / kPentahedralRoom) > table.grid / 2) {
        table.grid = root(budget / kPentahedralRoom);
        table.interpolation = Interpolation::kPentahedral;
    }
    table.grid |= 1;
}

int stopWhenInterrupted(icIterState state, int, void*) {
    return state == icIterProgress && interrupted() ? 1 : 0;
}

[[noreturn]] void refuse(const std::vector<ChainLink>& chain, size_t failing, int code) {
    const ChainLink& left = chain[failing];
    const std::string& right = chain[std::min(failing + 1, chain.size() - 1)].profileName;
    if (code == icErrXformKind) {
        throw InputError(left.profileName + ": converts to " + spaceText(left.desc.outSpace) +
                             ", from which " + right + " can't go on",
                         "choose other profiles");
    }
    throw InputError(left.profileName + ": combining it with " + right + " " + faultText(code),
                     "choose other profiles");
}

// Combined, a chain in which no transform has a grid of its own gets one of 3 points, and whatever
// is not linear between its curves (a gamut that is cut off, the cube root of Lab) is spread over
// half the range; a coarse table does likewise. With four inputs, the grid that pentahedra have
// room for is 11 points, on which ink tables that hold the curves of dot gain lose most. A stage
// that does nothing but have a grid makes either finer.
class GriddedChain {
  public:
    GriddedChain(const std::vector<ChainLink>& chain, icRenderingIntent intent)
        : finest_(finestGrid(chain)) {
        for (size_t i = 0; i < chain.size(); ++i) {
            if (isCoarse(chain.front().desc.inChannels) && i > 0 &&
                meetInConnectionSpace(chain[i - 1], chain[i])) {
                finest_ = gridOfStage(chain.front().desc.inChannels);
                stage_ = makeGridStage(finest_, intent);
                xforms_.push_back(stage_.get());
            }
            xforms_.push_back(chain[i].xform.get());
        }
    }

    const std::vector<icXform_t>& xforms() const { return xforms_; }
    int finest() const { return finest_; }

    // Place in the caller's chain of the transform that the library counts as number `failing`.
    size_t place(int failing) const {
        const auto at = static_cast<size_t>(std::max(failing - 1, 0));
        const auto stage = std::find(xforms_.begin(), xforms_.end(), stage_.get());
        return stage < xforms_.begin() + static_cast<ptrdiff_t>(at) ? at - 1 : at;
    }

  private:
    // By inputs, where a finer grid costs little and shows; the tables of presses have 33 points.
    bool isCoarse(uint32_t inputs) const {
        static constexpr int kCoarseBelow[] = {0, 254, 254, 33, 32};
        return finest_ < (inputs < std::size(kCoarseBelow) ? kCoarseBelow[inputs] : kFewestPoints);
    }

    int finest_;
    XformHandle stage_;
    std::vector<icXform_t> xforms_;
};

// A combination with a finer grid than pentahedra have room for stays multilinear, but a tag read
// from a profile doesn't, and would take gigabytes. Conversion and link both get a table that is
// sampled from it: coarser, but finer than the library's own for pentahedra.
void thinWideTable(Table& table) {
    constexpr int kThinnedGrid = 17;
    const bool wide =
        table.desc.inChannels == 4 && table.interpolation == Interpolation::kMultilinear;
    if (!wide) return;
    table.xform = tabulate(table.xform.get(), table.desc, kThinnedGrid, Precision::k16);
    table.grid = kThinnedGrid;
    table.interpolation = Interpolation::kPentahedral;
}

}  // namespace

std::string Table::describe() const {
    return kindText(desc.kind) + ", " + spaceText(desc.inSpace) + " to " +
           spaceText(desc.outSpace) + ", grid " + std::to_string(grid) + ", " +
           interpolationText(interpolation);
}

bool withoutGrid(const std::vector<ChainLink>& chain) {
    return finestGrid(chain) < kFewestPoints;
}

bool meetInConnectionSpace(const ChainLink& left, const ChainLink& right) {
    return isConnectionSpace(left.desc.outSpace) && left.desc.outChannels == 3 &&
           isConnectionSpace(right.desc.inSpace) && right.desc.inChannels == 3;
}

Table combineChain(const std::vector<ChainLink>& chain, const ConversionRequest& request) {
    const GriddedChain gridded(chain, request.intent);
    Table table;
    icXform_t combined = nullptr;
    int failingLink = 0;
    const int options = request.displayFlare ? 0 : icCombineColorimetric;
    const int code =
        icCombineXforms(static_cast<int>(gridded.xforms().size()), gridded.xforms().data(),
                        &combined, options, &failingLink, stopWhenInterrupted, nullptr, 0);
    table.xform.reset(combined);
    throwIfInterrupted();
    if (code != icSuccess) refuse(chain, gridded.place(failingLink), code);
    icXformGetDesc(combined, &table.desc);
    describeGrid(chain, gridded.finest(), table);
    thinWideTable(table);
    return table;
}

Table tableOfLink(const ChainLink& link) {
    Table table;
    icXformInc(link.xform.get());
    table.xform.reset(link.xform.get());
    table.desc = link.desc;
    table.grid = link.grid;
    table.interpolation = interpolationOf(link.desc.inChannels);
    return table;
}

Table withPrecision(Table table, Precision precision) {
    if (precision == Precision::k16) return table;
    // By inputs: what 8 bits can tell apart, at a size worth having.
    static constexpr int kGrids[] = {0, 255, 0, 33, 17};
    const uint32_t inputs = table.desc.inChannels;
    if (inputs < std::size(kGrids) && kGrids[inputs] != 0) table.grid = kGrids[inputs];
    table.xform = tabulate(table.xform.get(), table.desc, table.grid, precision);
    table.interpolation = interpolationOf(inputs);
    icXformGetDesc(table.xform.get(), &table.desc);
    return table;
}

}  // namespace lumoxa_tool
