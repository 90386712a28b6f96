// SPDX-License-Identifier: Apache-2.0
#include "gray/surface_fit.h"

#include <algorithm>
#include <new>

#include "gray/spline.h"

namespace lumoxa {

icSurfaceFit_t::icSurfaceFit_t(int32_t n_)
    : simplex(icAllocMatrixF64(3, 2)),
      values{},
      abscissae(static_cast<size_t>(n_)),
      scratchOrdinates(static_cast<size_t>(n_)),
      scratchSeconds(static_cast<size_t>(n_)),
      n(n_) {
    for (Surface& surface : surfaces) {
        surface.values = icAllocMatrixF32(n, n);
        surface.seconds = icAllocMatrixF32(n, n);
    }
}

void icSurfaceFit_t::buildRows(Surface& surface) {
    for (int32_t r = 0; r < n; ++r) {
        if (icSplineBuild(abscissae.data(), surface.values[r], n, surface.seconds[r]) != 0) {
            throw std::bad_alloc();
        }
    }
}

float icSurfaceFit_t::evaluate(const Surface& surface, const float* point) {
    for (int32_t r = 0; r < n; ++r) {
        icSplineEval(abscissae.data(), surface.values[r], surface.seconds[r], n, point[0],
                     &scratchOrdinates[static_cast<size_t>(r)]);
    }
    // Second derivatives of zero: across the rows a surface is piecewise linear, which keeps the
    // search free of overshoot between coarse rows.
    std::fill(scratchSeconds.begin(), scratchSeconds.end(), 0.0f);
    float value = 0.0f;
    icSplineEval(abscissae.data(), scratchOrdinates.data(), scratchSeconds.data(), n, point[1],
                 &value);
    return value;
}

void icSurfaceEval(icSurfaceFit_t& context, const float* point, float* results) {
    results[0] = context.evaluate(context.surfaces[1], point);
    results[1] = context.evaluate(context.surfaces[2], point);
}

}  // namespace lumoxa
