// SPDX-License-Identifier: Apache-2.0
//
// Affine coefficients of every simplex of every grid cell, worked out once when a transform is
// made: shared by tetrahedral (three inputs) and pentahedral (four inputs) interpolation.
//
// A cell is cut into simplices that all hold its lowest and highest corner; inside one, the
// interpolant through the corner values is affine. Its coefficients are the inverse of the matrix
// of the simplex's vertices (x_0 .. x_{n-1}, 1) times the corner values. Vertices are 0 and 1 and
// determinants 1 or -1, so the inverses hold only -1, 0 and 1 and the coefficients are differences
// of two 16-bit integers: exact in single precision, whatever the order of the sums.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <type_traits>

#include "eval/fan_out.h"
#include "lut/lut_state.h"

namespace lumoxa {

/// `Scheme` names the simplices of one dimension count:
///   kDimensions            n
///   kSimplices             n!
///   kCorners[t][v]         corner number of vertex v of simplex t, vertex 0 the lowest
///   dimensionOf(j)         input dimension of coordinate j, which coefficient j multiplies
///   bitOf(j)               corner bit of coordinate j
template <class Scheme>
struct SimplexTable {
    static constexpr int kDimensions = Scheme::kDimensions;
    static constexpr size_t kVertices = size_t{Scheme::kDimensions} + 1;
    static constexpr size_t kSimplices = Scheme::kSimplices;
    static constexpr size_t kCorners = size_t{1} << kDimensions;
    static constexpr size_t kFloatsPerCellAndOutput = kSimplices * kVertices;

    using Matrix = std::array<std::array<float, kVertices>, kVertices>;

    /// Inverse of a simplex's vertex matrix, by Gauss-Jordan elimination; exact.
    static Matrix inverseVertexMatrix(size_t simplex);

    /// All coefficients, as [cell][output][simplex][vertex], on one thread a processor core. Cells
    /// are numbered like the grid, the last dimension fastest. Throws std::bad_alloc.
    static std::shared_ptr<const float[]> build(const icLutState_t& state);

    /// Cells to step over for one step along each dimension.
    static std::array<uint32_t, size_t{kDimensions}> cellStrides(const icLutState_t& state);
};

/// Bytes that a coefficient table may take: 2 GiB. The largest grids of real four-ink profiles (17
/// points, 4 outputs) take 126 MB; what lies beyond the bound is a tag made to exhaust memory.
inline constexpr uint64_t kMaxCoefficientBytes = uint64_t{1} << 31;

template <class Scheme>
typename SimplexTable<Scheme>::Matrix SimplexTable<Scheme>::inverseVertexMatrix(size_t simplex) {
    Matrix a{};
    Matrix inverse{};
    for (size_t v = 0; v < kVertices; ++v) {
        const int corner = Scheme::kCorners[simplex][v];
        for (int j = 0; j < kDimensions; ++j) {
            a[v][static_cast<size_t>(j)] = static_cast<float>(corner >> Scheme::bitOf(j) & 1);
        }
        a[v][kDimensions] = 1.0f;
        inverse[v][v] = 1.0f;
    }
    for (size_t column = 0; column < kVertices; ++column) {
        size_t pivot = column;
        while (a[pivot][column] == 0.0f)
            ++pivot;
        std::swap(a[pivot], a[column]);
        std::swap(inverse[pivot], inverse[column]);
        const float scale = 1.0f / a[column][column];
        for (size_t k = 0; k < kVertices; ++k) {
            a[column][k] *= scale;
            inverse[column][k] *= scale;
        }
        for (size_t row = 0; row < kVertices; ++row) {
            const float factor = row == column ? 0.0f : a[row][column];
            for (size_t k = 0; k < kVertices; ++k) {
                a[row][k] -= factor * a[column][k];
                inverse[row][k] -= factor * inverse[column][k];
            }
        }
    }
    return inverse;
}

template <class Scheme>
std::array<uint32_t, size_t{SimplexTable<Scheme>::kDimensions}> SimplexTable<Scheme>::cellStrides(
    const icLutState_t& state) {
    std::array<uint32_t, size_t{kDimensions}> strides{};
    uint32_t stride = 1;
    for (size_t d = size_t{kDimensions}; d-- > 0;) {
        strides[d] = stride;
        stride *= static_cast<uint32_t>(state.lastCell[d] + 1);
    }
    return strides;
}

namespace simplex_detail {

/// Walks cells in order and fills their coefficients; one object a thread.
template <class Scheme, class Entry>
class CellFiller {
  public:
    using Table = SimplexTable<Scheme>;
    using Matrices = std::array<typename Table::Matrix, Table::kSimplices>;

    CellFiller(const icLutState_t& state, const Entry* clut, const Matrices& inverse, float* table)
        : s_(state), clut_(clut), inverse_(inverse), table_(table) {}

    void fill(int64_t first, int64_t count) {
        seek(first);
        float* out = table_ + static_cast<size_t>(first) * static_cast<size_t>(s_.outChannels) *
                                  Table::kFloatsPerCellAndOutput;
        for (int64_t i = 0; i < count; ++i, step()) {
            for (int o = 0; o < s_.outChannels; ++o) {
                fillOutput(clut_ + base() + o, out);
                out += Table::kFloatsPerCellAndOutput;
            }
        }
    }

  private:
    void seek(int64_t cell) {
        for (int d = Table::kDimensions - 1; d >= 0; --d) {
            const int64_t cells = s_.lastCell[d] + 1;
            k_[d] = static_cast<uint32_t>(cell % cells);
            cell /= cells;
        }
    }
    void step() {
        for (int d = Table::kDimensions - 1; d >= 0; --d) {
            if (++k_[d] <= static_cast<uint32_t>(s_.lastCell[d])) return;
            k_[d] = 0;
        }
    }
    size_t base() const {
        size_t offset = 0;
        for (int d = 0; d < Table::kDimensions; ++d)
            offset += size_t{k_[d]} * s_.strides[d];
        return offset;
    }
    void fillOutput(const Entry* cell, float* out) const {
        float corner[Table::kCorners];
        for (size_t k = 0; k < Table::kCorners; ++k) {
            corner[k] = static_cast<float>(cell[s_.cornerOffsets[k]]);
        }
        for (size_t t = 0; t < Table::kSimplices; ++t) {
            const auto& inverse = inverse_[t];
            for (size_t row = 0; row < Table::kVertices; ++row) {
                float sum = 0.0f;
                for (size_t v = 0; v < Table::kVertices; ++v) {
                    sum += inverse[row][v] * corner[Scheme::kCorners[t][v]];
                }
                *out++ = sum;
            }
        }
    }

    const icLutState_t& s_;
    const Entry* clut_;
    const Matrices& inverse_;
    float* table_;
    uint32_t k_[Table::kDimensions] = {};
};

}  // namespace simplex_detail

template <class Scheme>
std::shared_ptr<const float[]> SimplexTable<Scheme>::build(const icLutState_t& state) {
    std::array<Matrix, kSimplices> inverse;
    for (size_t t = 0; t < kSimplices; ++t)
        inverse[t] = inverseVertexMatrix(t);
    uint64_t cells = 1;
    for (int d = 0; d < kDimensions; ++d)
        cells *= static_cast<uint64_t>(state.lastCell[d] + 1);
    const uint64_t floats =
        cells * static_cast<uint64_t>(state.outChannels) * kFloatsPerCellAndOutput;
    if (floats * sizeof(float) > kMaxCoefficientBytes) throw std::bad_alloc();
    std::shared_ptr<float[]> table(new float[static_cast<size_t>(floats)]);

    const auto fill = [&](const auto* clut) {
        using Entry = std::remove_cvref_t<decltype(*clut)>;
        fanOut(static_cast<int64_t>(cells), hardwareThreads(), [&](int64_t first, int64_t count) {
            simplex_detail::CellFiller<Scheme, Entry>(state, clut, inverse, table.get())
                .fill(first, count);
        });
    };
    if (state.clut8 != nullptr) {
        fill(state.clut8);
    } else {
        fill(state.clut16);
    }
    return table;
}

}  // namespace lumoxa
