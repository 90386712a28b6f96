// SPDX-License-Identifier: Apache-2.0
#include "gray/pre_luts.h"

#include <algorithm>
#include <array>
#include <limits>
#include <vector>

#include "base/entry_guard.h"
#include "base/power.h"
#include "gray/minimize.h"
#include "gray/spline.h"
#include "gray/surface_fit.h"

namespace lumoxa {
namespace {

constexpr float kDeviceTop = 65535.0f;

struct Lab {
    float L, a, b;
};

float f(float t) {
    if (t <= static_cast<float>(kCieLinearBelow)) return kCieLinearSlope * t + kCieLinearOffset;
    return static_cast<float>(power(static_cast<double>(t), 1.0 / 3.0));
}

/// CIE 15, relative to the paper.
Lab labOf(const float* xyz, const float* paper) {
    const float fX = f(xyz[0] / paper[0]);
    const float fY = f(xyz[1] / paper[1]);
    const float fZ = f(xyz[2] / paper[2]);
    return {116.0f * fY - 16.0f, 500.0f * (fX - fY), 200.0f * (fY - fZ)};
}

/// A split tone at L*: straight lines between the control points, level beyond them.
Lab splitTone(std::span<const float> points, float L) {
    const size_t count = points.size() / 3;
    if (count == 0) return {L, 0.0f, 0.0f};
    const auto at = [&](size_t i) {
        return Lab{points[3 * i], points[3 * i + 1], points[3 * i + 2]};
    };
    size_t next = 0;
    while (next < count && at(next).L <= L)
        ++next;
    if (next == 0 || next == count) return at(next == 0 ? 0 : count - 1);
    const Lab low = at(next - 1);
    const Lab high = at(next);
    const float share = (L - low.L) / (high.L - low.L);
    return {L, low.a + share * (high.a - low.a), low.b + share * (high.b - low.b)};
}

/// a* and b* that are wanted where the print has this L*.
Lab wantedTone(const ToneRequest& request, float L) {
    const float fromMiddle = 2.0f * L / 100.0f - 1.0f;
    const float share = 1.0f - request.fade * fromMiddle * fromMiddle;
    const auto chroma = [](uint16_t encoded) {
        return static_cast<float>(encoded - kLabNeutral) / kLabChromaScale;
    };
    const Lab split = splitTone(request.controlPoints, L);
    return {L, chroma(request.pair.a) * share + split.a, chroma(request.pair.b) * share + split.b};
}

/// One point of the curves.
struct TonePoint {
    float companionA, companionB;
    Lab lab;
};

void storePoint(const ToneCurves& curves, int i, float x, const TonePoint& point) {
    curves.x[i] = x;
    curves.companionA[i] = point.companionA;
    curves.companionB[i] = point.companionB;
    curves.lightness[i] = point.lab.L * kLabLScale;
    curves.a[i] = point.lab.a * kLabChromaScale + kLabNeutral;
    curves.b[i] = point.lab.b * kLabChromaScale + kLabNeutral;
}

/// The search for the companions of one tone step.
class CompanionSearch {
  public:
    CompanionSearch(int n, const ToneRequest& request) : fit_(n), request_(request) {
        for (int i = 0; i < n; ++i)
            fit_.abscissae[static_cast<size_t>(i)] =
                kDeviceTop * static_cast<float>(i) / static_cast<float>(n - 1);
    }

    /// @param grid  n x n triples of the step, the second companion varying fastest
    TonePoint find(const float* grid, const float* paper) {
        fillSurfaces(grid, paper);
        std::array<double, 2> best = bestNode();
        // A second run from where the first one ended: the surfaces have creases, in which a
        // simplex can get stuck.
        for (int run = 0; run < kRuns; ++run)
            best = descend(best);
        const Point point = pointOf(best);
        return {point[0], point[1], labAt(point)};
    }

  private:
    using Point = std::array<float, 2>;
    static constexpr int kRuns = 2;
    static constexpr double kTolerance = 1e-7;
    // Error, as a squared distance in Lab, for one full range outside the patches.
    static constexpr double kOutside = 1e4;

    void fillSurfaces(const float* grid, const float* paper) {
        for (int u = 0; u < fit_.n; ++u) {
            for (int v = 0; v < fit_.n; ++v, grid += 3) {
                const Lab lab = labOf(grid, paper);
                fit_.surfaces[0].values[v][u] = lab.L;
                fit_.surfaces[1].values[v][u] = lab.a;
                fit_.surfaces[2].values[v][u] = lab.b;
            }
        }
        for (auto& surface : fit_.surfaces)
            fit_.buildRows(surface);
    }

    Lab labAt(const Point& point) {
        Lab lab{fit_.evaluate(fit_.surfaces[0], point.data()), 0.0f, 0.0f};
        std::array<float, 2> chroma{};
        icSurfaceEval(fit_, point.data(), chroma.data());
        lab.a = chroma[0];
        lab.b = chroma[1];
        return lab;
    }

    static Point pointOf(const std::array<double, 2>& place) {
        const auto inside = [](double v) {
            return static_cast<float>(std::clamp(v, 0.0, static_cast<double>(kDeviceTop)));
        };
        return {inside(place[0]), inside(place[1])};
    }

    double toneError(const Lab& lab) const {
        const Lab wanted = wantedTone(request_, lab.L);
        const double da = lab.a - wanted.a;
        const double db = lab.b - wanted.b;
        return da * da + db * db;
    }

    static double objective(const double* place, void* context) {
        auto& self = *static_cast<CompanionSearch*>(context);
        const Point point = pointOf({place[0], place[1]});
        double error = self.toneError(self.labAt(point));
        for (size_t i = 0; i < point.size(); ++i) {
            const double beyond = (place[i] - static_cast<double>(point[i])) / kDeviceTop;
            error += kOutside * beyond * beyond;
        }
        return error;
    }

    std::array<double, 2> bestNode() const {
        std::array<double, 2> best{};
        double lowest = std::numeric_limits<double>::infinity();
        for (int v = 0; v < fit_.n; ++v) {
            for (int u = 0; u < fit_.n; ++u) {
                const double here =
                    toneError({fit_.surfaces[0].values[v][u], fit_.surfaces[1].values[v][u],
                               fit_.surfaces[2].values[v][u]});
                if (here >= lowest) continue;
                lowest = here;
                best = {fit_.abscissae[static_cast<size_t>(u)],
                        fit_.abscissae[static_cast<size_t>(v)]};
            }
        }
        return best;
    }

    std::array<double, 2> descend(const std::array<double, 2>& start) {
        // Half a patch long, pointing inwards.
        const double edge = 0.5 * static_cast<double>(fit_.abscissae[1]);
        for (int i = 0; i < 3; ++i) {
            double* vertex = fit_.simplex[i];
            for (int j = 0; j < 2; ++j) {
                const double from = start[static_cast<size_t>(j)];
                const double step = from > 0.5 * kDeviceTop ? -edge : edge;
                vertex[j] = i == j + 1 ? from + step : from;
            }
            fit_.values[i] = objective(vertex, this);
        }
        int evaluations = 0;
        icSimplexMinimize(fit_.simplex.rows(), fit_.values, fit_.dimension, kTolerance, objective,
                          &evaluations, this);
        // Whether or not it converged: the best vertex is no worse than the start.
        const double* best = fit_.simplex[static_cast<int32_t>(
            std::min_element(fit_.values, fit_.values + 3) - fit_.values)];
        return {best[0], best[1]};
    }

    icSurfaceFit_t fit_;
    const ToneRequest& request_;
};

void fitGrids(int n, int steps, const float* samples, const ToneRequest& request,
              const ToneCurves& curves) {
    const size_t gridFloats = size_t{3} * static_cast<size_t>(n) * static_cast<size_t>(n);
    const float* paper = samples + gridFloats * static_cast<size_t>(steps);
    storePoint(curves, 0, 0.0f, {0.0f, 0.0f, labOf(paper, paper)});
    CompanionSearch search(n, request);
    for (int s = 1; s <= steps; ++s) {
        const float* grid = samples + gridFloats * static_cast<size_t>(s - 1);
        storePoint(curves, s, kDeviceTop * static_cast<float>(s) / static_cast<float>(steps + 1),
                   search.find(grid, paper));
    }
    storePoint(curves, steps + 1, kDeviceTop, {0.0f, 0.0f, labOf(paper + 3, paper)});
}

/// A ramp has its tone; its points are resampled to the curves'.
void fitRamp(int n, int steps, const float* samples, const ToneCurves& curves) {
    const auto count = static_cast<size_t>(n);
    std::vector<float> x(count);
    std::array<std::vector<float>, 3> lab;
    for (auto& channel : lab)
        channel.resize(count);
    for (size_t i = 0; i < count; ++i) {
        const Lab point = labOf(samples + 3 * i, samples);
        x[i] = kDeviceTop * static_cast<float>(i) / static_cast<float>(n - 1);
        lab[0][i] = point.L;
        lab[1][i] = point.a;
        lab[2][i] = point.b;
    }
    const Spline L(x.data(), lab[0].data(), n);
    const Spline a(x.data(), lab[1].data(), n);
    const Spline b(x.data(), lab[2].data(), n);
    for (int i = 0; i <= steps + 1; ++i) {
        const float at = kDeviceTop * static_cast<float>(i) / static_cast<float>(steps + 1);
        storePoint(curves, i, at, {at, at, {L(at), a(at), b(at)}});
    }
}

/// Makes a curve fall, or stay level, from start to end with the least squared change: pooled
/// adjacent violators (Ayer et al., 1955).
void makeFalling(float* curve, int count) {
    struct Pool {
        double sum;
        int size;
        double mean() const { return sum / size; }
    };
    std::vector<Pool> pools;
    for (int i = 0; i < count; ++i) {
        pools.push_back({curve[i], 1});
        while (pools.size() > 1 && pools.back().mean() > pools[pools.size() - 2].mean()) {
            const Pool last = pools.back();
            pools.pop_back();
            pools.back().sum += last.sum;
            pools.back().size += last.size;
        }
    }
    for (const Pool& pool : pools)
        curve = std::fill_n(curve, pool.size, static_cast<float>(pool.mean()));
}

}  // namespace

void fitToneCurves(int n, int steps, const float* samples, int layoutFlag,
                   const ToneRequest& request, const ToneCurves& curves) {
    if (layoutFlag == gray_layout::kRamp) {
        fitRamp(n, steps, samples, curves);
    } else {
        fitGrids(n, steps, samples, request, curves);
    }
    makeFalling(curves.lightness, steps + 2);
}

void refitToneCurves(GrayConv_t& state, const ToneRequest& request) {
    fitToneCurves(grayGridSize(state), graySteps(state), state.samples,
                  static_cast<int>(state.layoutFlag), request,
                  {state.curveX, state.outCurveA, state.outCurveB, state.curveL, state.inCurveA,
                   state.inCurveB});
}

}  // namespace lumoxa

using namespace lumoxa;

int icBuildGrayPreLuts(int n, int steps, const float* samples, int layoutFlag,
                       const unsigned short* pair, float parameter, float* const curves[6]) {
    if (curves == nullptr || std::find(curves, curves + 6, nullptr) != curves + 6 ||
        !canFitGray(n, steps, layoutFlag, samples)) {
        return icErrInvalid;
    }
    return guarded([&] {
        fitToneCurves(n, steps, samples, layoutFlag, {tonePair(pair), parameter, {}},
                      {curves[0], curves[1], curves[2], curves[3], curves[4], curves[5]});
        return icSuccess;
    });
}
