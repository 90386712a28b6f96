// SPDX-License-Identifier: Apache-2.0
//
// Matrices that are reached through an array of row pointers, as the simplex minimiser takes them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lumoxa {

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

}  // namespace lumoxa
