// SPDX-License-Identifier: Apache-2.0
//
// Surfaces over a square grid of measurements, and the simplex that searches them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumoxa {

/// A matrix that is reached through an array of row pointers, as the simplex minimiser takes it.
template <class T>
class RowMatrix {
  public:
    RowMatrix() = default;
    /// Zeroed. Empty where rows x cols is no positive number or a multiple of 2^32.
    RowMatrix(int32_t rows, int32_t cols) {
        const int64_t elements = int64_t{rows} * cols;
        if (rows < 1 || cols < 1 || static_cast<uint32_t>(elements) == 0) return;
        block_.resize(static_cast<size_t>(elements));
        for (int32_t i = 0; i < rows; ++i)
            rows_.push_back(block_.data() + static_cast<ptrdiff_t>(i) * cols);
    }
    RowMatrix(RowMatrix&&) noexcept = default;
    RowMatrix& operator=(RowMatrix&&) noexcept = default;

    bool empty() const { return rows_.empty(); }
    T* operator[](int32_t row) const { return rows_[static_cast<size_t>(row)]; }
    T** rows() { return rows_.data(); }

  private:
    std::vector<T> block_;
    std::vector<T*> rows_;
};

inline RowMatrix<double> icAllocMatrixF64(int32_t rows, int32_t cols) {
    return {rows, cols};
}
inline RowMatrix<float> icAllocMatrixF32(int32_t rows, int32_t cols) {
    return {rows, cols};
}

/// Up to three surfaces over one grid, and the simplex of a search in their plane. It lives for one
/// table build. The grid's size belongs to the context, so several threads can search at once.
struct icSurfaceFit_t {
    /// @param n  grid points of either axis, at least 2
    /// Throws std::bad_alloc.
    explicit icSurfaceFit_t(int32_t n);

    RowMatrix<double> simplex;  // 3 vertices of 2 coordinates
    double values[3];
    std::vector<float> abscissae;  // of both axes of every surface
    std::vector<float> scratchOrdinates;
    std::vector<float> scratchSeconds;
    struct Surface {
        RowMatrix<float> values;   // row r lies at the second coordinate abscissae[r]
        RowMatrix<float> seconds;  // second derivatives along the rows
    } surfaces[3];
    int32_t dimension = 2;
    int32_t n;

    /// Makes the row splines of a surface whose values are filled in.
    void buildRows(Surface& surface);

    /// A surface at (first, second): cubic along the first axis, piecewise linear along the second.
    float evaluate(const Surface& surface, const float* point);
};

/// The second and the third surface at a point of two coordinates.
void icSurfaceEval(icSurfaceFit_t& context, const float* point, float* results);

}  // namespace lumoxa
