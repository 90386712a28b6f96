// SPDX-License-Identifier: Apache-2.0
//
// Interpolation in a grid (a CLUT) of up to 15 inputs.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "convert/stage.h"

namespace lumoxa::engine {

/// Nodes 0..65535 for 0..1, the last input fastest, outputs innermost.
struct Grid {
    std::vector<int> points;  // of every input, at least 2
    int outputs = 0;
    std::vector<uint16_t> nodes;

    int inputs() const { return static_cast<int>(points.size()); }
};

/// How colours between nodes are computed.
enum class Interpolation {
    /// All corners of a cell of three inputs, weighted: what treats the axes of Lab alike, whose
    /// grays lie along one of them.
    kMultilinear,
    /// The corners of the simplex that holds the colour (tetrahedra, for four inputs 4-simplices):
    /// the diagonal of equal coordinates, where the grays of devices lie and, nearly, those of XYZ,
    /// keeps to itself.
    kSimplex,
};

class GridStage : public Stage {
  public:
    GridStage(Grid grid, Interpolation interpolation);

    void run(Row* rows, int pixels) const override;
    std::string describe() const override;

    const Grid& grid() const { return grid_; }
    Interpolation interpolation() const { return interpolation_; }

  private:
    struct Cells;
    void locate(const Row* rows, int pixels, Cells& cells) const;
    void packForKernels();
    void runKernels(Row* rows, int pixels) const;

    Grid grid_;
    Interpolation interpolation_;
    std::vector<uint32_t> strides_;  // in nodes' samples
    // For the kernels, which interpolate in three and four dimensions.
    std::shared_ptr<const uint16_t[]> packed_;
    std::vector<uint32_t> packedStrides_;
};

}  // namespace lumoxa::engine
