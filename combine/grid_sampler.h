// SPDX-License-Identifier: Apache-2.0
//
// Fills the grid of a combination: every grid point runs through the chain, 16 bits in and out.
#pragma once

#include <vector>

#include "combine/lut16.h"
#include "eval/kernel_table.h"

namespace lumoxa {

/// Reports progress of a combination to a callback, if there is one. An operation that has started
/// always ends.
class CombineProgress {
  public:
    CombineProgress(icProgressCallback callback, void* user) : callback_(callback), user_(user) {}

    void start() const { report(icIterStart, 0); }
    bool stopAt(int percent) const { return report(icIterProgress, percent) != 0; }
    int end() const { return report(icIterEnd, 100); }

  private:
    int report(icIterState state, int percent) const {
        return callback_ != nullptr ? callback_(state, percent, user_) : 0;
    }

    icProgressCallback callback_;
    void* user_;
};

/// Runs all points of the grid through the stages' kernels, slice by slice. Returns false when the
/// progress callback asked to stop. Throws std::bad_alloc.
bool sampleGrid(const std::vector<BoundKernel>& stages, const Lut16View& lut,
                const CombineProgress& progress);

}  // namespace lumoxa
