// SPDX-License-Identifier: Apache-2.0
//
// Invariants: fractions lie in [0, 1], nodes are integers below 2^16; weights are summed in the
// order of the path (simplices) or of the corners' numbers (all corners), so that results are the
// same bytes everywhere.
#include "convert/grid_stage.h"

#include <algorithm>
#include <type_traits>

#include "base/pcs_encoding.h"
#include "lut/simplex_nodes.h"

namespace lumoxa::engine {

/// Where the pixels of a block lie in the grid.
struct GridStage::Cells {
    uint32_t base[kBlockPixels];
    Row fraction[kMaxChannels];
};

GridStage::GridStage(Grid grid, Interpolation interpolation)
    : Stage(grid.inputs(), grid.outputs),
      grid_(std::move(grid)),
      interpolation_(interpolation),
      strides_(grid_.points.size()) {
    auto stride = static_cast<uint32_t>(grid_.outputs);
    for (size_t d = grid_.points.size(); d-- > 0;) {
        strides_[d] = stride;
        stride *= static_cast<uint32_t>(grid_.points[d]);
    }
    if (grid_.inputs() == 3 || grid_.inputs() == 4) packForKernels();
}

void GridStage::packForKernels() {
    const auto outputs = static_cast<uint32_t>(grid_.outputs);
    const auto padded = static_cast<uint32_t>(paddedOutputs(grid_.outputs));
    packed_ = packNodes(grid_.nodes.data(), grid_.nodes.size() / outputs, grid_.outputs);
    for (const uint32_t stride : strides_)
        packedStrides_.push_back(stride / outputs * padded);
}

void GridStage::runKernels(Row* rows, int pixels) const {
    constexpr float kPerTop = 1.0f / kSampleMax16;
    const RowKernels& kernels = rowKernels();
    const auto interpolate = interpolation_ == Interpolation::kMultilinear ? kernels.cubes
                             : grid_.inputs() == 3                         ? kernels.tetrahedra
                                                                           : kernels.pentahedra;
    const int whole = (pixels + kLanes - 1) / kLanes * kLanes;
    uint32_t cell[kBlockPixels] = {};
    Row fraction[4];
    for (size_t d = 0; d < packedStrides_.size(); ++d) {
        for (int i = 0; i < pixels; ++i)
            rows[d][i] = clipped(rows[d][i], 1.0f);
        std::fill(rows[d] + pixels, rows[d] + whole, 0.0f);
        kernels.locate(rows[d], pixels, static_cast<float>(grid_.points[d] - 1),
                       grid_.points[d] - 2, packedStrides_[d], cell, fraction[d]);
    }
    for (int o = 0; o < grid_.outputs; o += kOutputGroup) {
        Groups groups;
        interpolate(packed_.get() + o, packedStrides_.data(), cell, fraction, pixels, groups);
        for (int c = 0; c < kOutputGroup && o + c < grid_.outputs; ++c) {
            for (int i = 0; i < pixels; ++i)
                rows[o + c][i] = groups[i * kOutputGroup + c] * kPerTop;
        }
    }
}

void GridStage::locate(const Row* rows, int pixels, Cells& cells) const {
    std::fill_n(cells.base, pixels, 0U);
    for (size_t d = 0; d < strides_.size(); ++d) {
        const auto last = static_cast<float>(grid_.points[d] - 1);
        const int32_t lastCell = grid_.points[d] - 2;
        const uint32_t stride = strides_[d];
        for (int i = 0; i < pixels; ++i) {
            const float position = clipped(rows[d][i], 1.0f) * last;
            const int32_t cell = std::min(static_cast<int32_t>(position), lastCell);
            cells.fraction[d][i] = position - static_cast<float>(cell);
            cells.base[i] += static_cast<uint32_t>(cell) * stride;
        }
    }
}

namespace {

constexpr float kPerTop = 1.0f / kSampleMax16;

/// A block of the grid's answers, pixel by pixel. Outputs is a constant for the counts of nearly
/// all profiles, so that the loops over outputs unroll.
template <class Outputs>
class Interpolator {
  public:
    Interpolator(Outputs outputs, const uint16_t* nodes, const std::vector<uint32_t>& strides)
        : outputs_(outputs), nodes_(nodes), strides_(strides) {}

    /// The path from the cell's lowest corner to its highest, by falling fractions. Equal fractions
    /// may go in any order: the corner between them has the weight 0.
    void alongSimplex(uint32_t base, const Row* fraction, int pixel, float* out) const {
        const int n = static_cast<int>(strides_.size());
        float f[kMaxChannels] = {};
        uint32_t step[kMaxChannels] = {};
        for (int d = 0; d < n; ++d) {
            const float value = fraction[d][pixel];
            int at = d;
            for (; at > 0 && f[at - 1] < value; --at) {
                f[at] = f[at - 1];
                step[at] = step[at - 1];
            }
            f[at] = value;
            step[at] = strides_[static_cast<size_t>(d)];
        }
        start(out, base, 1.0f - f[0]);
        for (int d = 0; d < n; ++d) {
            base += step[d];
            add(out, base, d + 1 < n ? f[d] - f[d + 1] : f[d]);
        }
    }

    void run(const uint32_t* base, const Row* fraction, int pixels, Row* rows) const {
        const int n = static_cast<int>(outputs_);
        for (int i = 0; i < pixels; ++i) {
            float out[kMaxChannels];
            alongSimplex(base[i], fraction, i, out);
            for (int o = 0; o < n; ++o)
                rows[o][i] = out[o] * kPerTop;
        }
    }

  private:
    void start(float* out, uint32_t node, float weight) const {
        const uint16_t* values = nodes_ + node;
        for (int o = 0; o < static_cast<int>(outputs_); ++o)
            out[o] = weight * static_cast<float>(values[o]);
    }
    void add(float* out, uint32_t node, float weight) const {
        const uint16_t* values = nodes_ + node;
        for (int o = 0; o < static_cast<int>(outputs_); ++o)
            out[o] += weight * static_cast<float>(values[o]);
    }

    Outputs outputs_;
    const uint16_t* nodes_;
    const std::vector<uint32_t>& strides_;
};

template <class Body>
void withOutputs(int outputs, const Body& body) {
    switch (outputs) {
        case 3:
            return body(std::integral_constant<int, 3>());
        case 4:
            return body(std::integral_constant<int, 4>());
        default:
            return body(outputs);
    }
}

}  // namespace

void GridStage::run(Row* rows, int pixels) const {
    if (packed_ != nullptr) return runKernels(rows, pixels);
    Cells cells;
    locate(rows, pixels, cells);
    withOutputs(grid_.outputs, [&](auto outputs) {
        const Interpolator interpolator(outputs, grid_.nodes.data(), strides_);
        interpolator.run(cells.base, cells.fraction, pixels, rows);
    });
}

std::string GridStage::describe() const {
    std::string text = "grid ";
    for (size_t d = 0; d < grid_.points.size(); ++d)
        text += (d > 0 ? " x " : "") + std::to_string(grid_.points[d]);
    return text + (interpolation_ == Interpolation::kSimplex ? ", simplices" : ", multilinear");
}

}  // namespace lumoxa::engine
