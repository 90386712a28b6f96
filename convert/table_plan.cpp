// SPDX-License-Identifier: Apache-2.0
#include "convert/table_plan.h"

#include <algorithm>
#include <utility>

#include "lut/simplex_schemes.h"

namespace lumoxa::engine {
namespace {

using Tables = std::vector<std::vector<uint16_t>>;

constexpr bool kWithCurves = true;  // the stages of LUT kernels can be run without them

/// Tables of a stage whose curves all are tables of one length; nothing otherwise.
std::optional<Tables> tablesOf(const CurveStage& stage) {
    Tables tables;
    for (const CurvePtr& curve : stage.curves()) {
        if (curve->table() == nullptr) return std::nullopt;
        if (!tables.empty() && tables.front().size() != curve->table()->size()) return std::nullopt;
        tables.push_back(*curve->table());
    }
    return tables;
}

std::vector<uint16_t> flattened(const Tables& tables) {
    std::vector<uint16_t> flat;
    for (const std::vector<uint16_t>& table : tables)
        flat.insert(flat.end(), table.begin(), table.end());
    return flat;
}

TableSet<uint16_t> viewOf(const std::vector<uint16_t>& flat, const Tables& tables) {
    if (tables.empty()) return {};
    return {flat.data(), static_cast<int32_t>(tables.front().size())};
}

/// Fills the evaluation state that the kernels of LUT tags share. Colour spaces are left at 0,
/// which makes samples of all spaces those of devices: Lab is coded by ICC version 4 here, full
/// range.
void fillState(const TableForm& form, icLutState_t& state) {
    const auto storage = std::make_shared<LutStorage>();
    storage->inputCurves = flattened(form.inCurves);
    storage->outputCurves = flattened(form.outCurves);
    state.kind = kTypeLutAToB;
    state.clutBits = 16;
    state.inChannels = form.grid.inputs();
    state.outChannels = form.grid.outputs;
    state.inputCurves = viewOf(storage->inputCurves, form.inCurves);
    state.outputCurves = viewOf(storage->outputCurves, form.outCurves);
    state.hasInputCurves = static_cast<bool>(state.inputCurves);
    state.hasOutputCurves = static_cast<bool>(state.outputCurves);
    state.inputEntries = state.inputCurves.entries;
    state.outputEntries = state.outputCurves.entries;
    state.outputTableScale = static_cast<float>(state.outputEntries - 1) / kSampleMax16;
    state.hasClut = true;
    state.clut16 = form.grid.nodes.data();
    auto stride = static_cast<uint32_t>(state.outChannels);
    for (int d = state.inChannels; d-- > 0;) {
        const int points = form.grid.points[static_cast<size_t>(d)];
        state.gridPoints[d] = static_cast<uint32_t>(points);
        state.lastCell[d] = points - 2;
        state.positionScale[d] = static_cast<float>(points - 1) / kSampleMax16;
        state.strides[d] = stride;
        stride *= static_cast<uint32_t>(points);
    }
    state.storage = storage;
}

/// Cells and fractions of the 256 levels of each input: what 8-bit pixels need before the grid,
/// curves included. Cells add up over the inputs.
template <class Scheme>
class ByteCells {
  public:
    void build(const SimplexState<Scheme>& state) {
        const InputStage<Lut16Family, uint8_t> input(state, SimplexClut<Scheme>::kClipsMiddle,
                                                     kWithCurves);
        const SimplexClut<Scheme> clut(state);
        for (int d = 0; d < Scheme::kDimensions; ++d) {
            for (int level = 0; level < kLevels; level += kBlockPixels)
                fillBlock(input, clut, d, level);
        }
    }

    void locate(const uint8_t* source, int pixels, uint32_t* cell, Row* fraction) const {
        for (int i = 0; i < pixels; ++i) {
            uint32_t sum = 0;
            for (int d = 0; d < Scheme::kDimensions; ++d) {
                const Place& place = places_[d][*source++];
                sum += place.cell;
                fraction[d][i] = place.fraction;
            }
            cell[i] = sum;
        }
    }

  private:
    static constexpr int kLevels = 256;
    struct Place {
        uint32_t cell;
        float fraction;
    };

    // Levels of one input; the others are 0, whose cell is the first unless a curve moves it.
    void fillBlock(const InputStage<Lut16Family, uint8_t>& input, const SimplexClut<Scheme>& clut,
                   int d, int level) {
        uint8_t samples[kBlockPixels * Scheme::kDimensions] = {};
        Row x[kMaxInputs] = {}, fraction[Scheme::kDimensions];
        uint32_t cell[kBlockPixels];
        for (int i = 0; i < kBlockPixels; ++i)
            samples[i * Scheme::kDimensions + d] = static_cast<uint8_t>(level + i);
        input.run(samples, kBlockPixels, x);
        for (int other = 0; other < Scheme::kDimensions; ++other) {
            if (other != d) std::fill_n(x[other], kBlockPixels, 0.0f);
        }
        clut.locate(x, kBlockPixels, cell, fraction);
        for (int i = 0; i < kBlockPixels; ++i)
            places_[d][level + i] = {cell[i], fraction[d][i]};
    }

    Place places_[Scheme::kDimensions][kLevels];
};

template <class Scheme>
class TablePlan : public Plan {
  public:
    TablePlan(const TableForm& form, std::shared_ptr<const Plan> general)
        : Plan(form.grid.inputs(), form.grid.outputs), general_(std::move(general)) {
        fillState(form, state_);
        state_.nodes = packNodes(state_);
        state_.clut16 = nullptr;  // the kernel reads the packed nodes; the form may go
        byteCells_.build(state_);
    }

    void convert(SampleType in, const void* source, SampleType out, void* destination,
                 ptrdiff_t pixels) const override {
        if (in == SampleType::kF32 || out == SampleType::kF32)
            return general_->convert(in, source, out, destination, pixels);
        const bool wideOut = out == SampleType::kU16;
        if (in == SampleType::kU8) {
            wideOut ? fromBytes<uint16_t>(source, destination, pixels)
                    : fromBytes<uint8_t>(source, destination, pixels);
        } else {
            wideOut ? fromWide<uint16_t>(source, destination, pixels)
                    : fromWide<uint8_t>(source, destination, pixels);
        }
    }

  private:
    template <class Out>
    void fromWide(const void* source, void* destination, ptrdiff_t pixels) const {
        convertLut<Lut16Family, SimplexClut<Scheme>, uint16_t, Out>(
            state_, static_cast<const uint16_t*>(source), static_cast<Out*>(destination), pixels);
    }

    template <class Out>
    void fromBytes(const void* source, void* destination, ptrdiff_t pixels) const {
        const auto* s = static_cast<const uint8_t*>(source);
        auto* d = static_cast<Out*>(destination);
        const SimplexClut<Scheme> clut(state_);
        const OutputStage<Lut16Family, Out> output(state_, kWithCurves);
        uint32_t cell[kBlockPixels] = {};
        Row fraction[Scheme::kDimensions] = {};
        Groups groups;
        Row values[kOutputRows];
        for (ptrdiff_t done = 0; done < pixels; done += kBlockPixels) {
            const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, pixels - done));
            byteCells_.locate(s + done * Scheme::kDimensions, n, cell, fraction);
            if (outputs() <= kOutputGroup) {
                clut.interpolate(0, cell, fraction, n, groups);
                output.run(groups, n, d + done * outputs());
            } else {
                clut.runCells(cell, fraction, n, values);
                output.run(values, n, d + done * outputs());
            }
        }
    }

    SimplexState<Scheme> state_;
    ByteCells<Scheme> byteCells_;
    std::shared_ptr<const Plan> general_;
};

}  // namespace

std::optional<TableForm> tableFormOf(const StageList& samplesToSamples) {
    TableForm form;
    const auto& stages = samplesToSamples.stages();
    size_t at = 0;
    const auto takeCurves = [&](Tables& tables) {
        if (at == stages.size()) return true;
        const auto* curves = dynamic_cast<const CurveStage*>(stages[at].stage.get());
        if (curves == nullptr) return true;
        const std::optional<Tables> found = tablesOf(*curves);
        if (found) tables = *found;
        ++at;
        return found.has_value();
    };
    if (!takeCurves(form.inCurves) || at == stages.size()) return std::nullopt;
    const auto* grid = dynamic_cast<const GridStage*>(stages[at++].stage.get());
    if (grid == nullptr || grid->interpolation() != Interpolation::kSimplex) return std::nullopt;
    form.grid = grid->grid();
    if (!takeCurves(form.outCurves) || at != stages.size()) return std::nullopt;
    return form;
}

bool servesTable(int inputs, int outputs) {
    return (inputs == TetraScheme::kDimensions || inputs == PentaScheme::kDimensions) &&
           outputs >= 1 && outputs <= kMaxChannels;
}

std::shared_ptr<const Plan> makeTablePlan(const TableForm& form,
                                          std::shared_ptr<const Plan> general) {
    if (form.grid.inputs() == TetraScheme::kDimensions)
        return std::make_shared<TablePlan<TetraScheme>>(form, std::move(general));
    return std::make_shared<TablePlan<PentaScheme>>(form, std::move(general));
}

}  // namespace lumoxa::engine
