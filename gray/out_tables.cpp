// SPDX-License-Identifier: Apache-2.0
#include "gray/out_tables.h"

#include <algorithm>
#include <array>

#include "gray/gray_tables.h"
#include "gray/inverse_lut.h"
#include "gray/minimize.h"
#include "gray/shaping.h"
#include "gray/smoothing.h"
#include "profile/entry_guard.h"

namespace lumoxa {
namespace {

constexpr float kLTop = kLabLMax;
constexpr uint32_t kFullScale = 65535;  // the L* sample of the last entry
constexpr size_t kToneCurveStep = 256;
// A darkest tone at the end of the ramp that is below 10 % is taken 1 % lighter: measurements that
// deep are noise.
constexpr float kDeepBlack = 6528.0f;
constexpr float kBlackMargin = 652.8f;
constexpr float kMinimumTolerance = 0.001f;

using Curve = std::array<float, kInverseLutPoints>;

/// The curves as inversion takes them, of 18 points.
struct Curves18 {
    Curve x, L, a, b;

    explicit Curves18(const GrayConv_t& state) {
        const int points = graySteps(state) + 2;
        const float* const own[] = {state.curveL, state.outCurveA, state.outCurveB};
        Curve* const mine[] = {&L, &a, &b};
        if (points == kInverseLutPoints) {
            std::copy_n(state.curveX, points, x.begin());
            for (size_t c = 0; c < std::size(own); ++c)
                std::copy_n(own[c], points, mine[c]->begin());
            return;
        }
        const float x0 = state.curveX[0];
        const float range = state.curveX[points - 1] - x0;
        for (size_t i = 0; i < x.size(); ++i)
            x[i] = x0 + range * static_cast<float>(i) / static_cast<float>(x.size() - 1);
        for (size_t c = 0; c < std::size(own); ++c) {
            const Spline spline(state.curveX, own[c], points);
            std::transform(x.begin(), x.end(), mine[c]->begin(), spline);
        }
    }
};

/// The device's lightness curve, and what of it can be inverted.
class Lightness {
  public:
    explicit Lightness(const Curves18& curves)
        : curves_(curves), spline_(curves.x.data(), curves.L.data(), kInverseLutPoints) {
        findBlack();
    }

    float black() const { return black_; }

    /// The device value for an L*. Each search ends where the one before ended, so the L* asked for
    /// one after the other must rise; where a search fails, the one before answers.
    float invert(float target) {
        get_inv_lut(target, curves_.x.data(), curves_.L.data(), spline_.secondDerivatives(),
                    curves_.x.front(), upper_, &upper_);
        return upper_;
    }

  private:
    void findBlack() {
        const Curve& L = curves_.L;
        const Curve& x = curves_.x;
        const auto darkest = static_cast<size_t>(std::min_element(L.begin(), L.end()) - L.begin());
        upper_ = x.back();
        if (darkest == L.size() - 1) {
            black_ = L[darkest] < kDeepBlack ? L[darkest] + kBlackMargin : L[darkest];
            return;
        }
        // Darker before the end: more ink makes it lighter again. A minimum on paper has nothing
        // before it.
        const size_t before = darkest == 0 ? 0 : darkest - 1;
        float where = x[darkest];
        const float minimum = icSplineMinimize(x[before], x[darkest], x[darkest + 1], x.data(),
                                               L.data(), spline_.secondDerivatives(),
                                               kInverseLutPoints, kMinimumTolerance, &where);
        black_ = std::min(minimum, L.back());
        if (minimum <= L.back()) upper_ = where;
    }

    const Curves18& curves_;
    Spline spline_;
    float black_ = 0.0f;
    float upper_ = 0.0f;
};

GrayTables outTables(GrayConv_t& state) {
    return {state.outTable1, state.outTable2, state.outTable3, state.outEntries};
}

/// A companion's table: its curve at the main channel's values.
void fillCompanion(const Spline& companion, std::span<const uint16_t> main,
                   std::span<uint16_t> table) {
    std::transform(main.begin(), main.end(), table.begin(),
                   [&](uint16_t value) { return tableEntry(companion(value)); });
}

}  // namespace

void buildOutTables(GrayConv_t& state, const ToneRequest& request, const Tonality& tonality) {
    TableBuild build(state, outTables(state), request);
    if (!build.needed()) return;
    const Curves18 curves(state);
    Lightness lightness(curves);
    const float base = tonality.perceptual ? lightness.black() : 0.0f;
    const float range = kLTop - base;
    // The entry of L* = 100; those above it stay 0.
    const uint64_t last = uint64_t{state.outEntries - 1} * kLabLMax / kFullScale;
    const std::span main = build.table(0).first(static_cast<size_t>(last) + 1);
    for (size_t i = 0; i < main.size(); ++i) {
        double t = last == 0 ? 0.0 : static_cast<double>(i) / static_cast<double>(last);
        if (tonality.perceptual && tonality.shaped) {
            t = shapedTone(static_cast<double>(base) / kLabLMax, t,
                           static_cast<double>(tonality.shapingParameter));
        }
        const auto wanted =
            static_cast<float>(t * static_cast<double>(range) + static_cast<double>(base));
        const float target = std::max(std::min(wanted, kLTop), lightness.black());
        main[i] = tableEntry(lightness.invert(target));
    }
    smoothTable(main);
    const auto companion = [&](const Curve& curve, std::span<uint16_t> table) {
        const std::span entries = table.first(main.size());
        fillCompanion(Spline::piecewiseLinear(curves.x.data(), curve.data(), kInverseLutPoints),
                      main, entries);
        smoothTable(entries);
    };
    companion(curves.a, build.table(1));
    companion(curves.b, build.table(2));
    build.finish();
}

void buildOutTables(GrayConv_t& state, const ToneRequest& request, const float* toneCurve) {
    TableBuild build(state, outTables(state), request);
    if (!build.needed()) return;
    const Curves18 curves(state);
    Lightness lightness(curves);
    std::array<float, kToneCurvePoints> toneX;
    for (size_t k = 0; k < toneX.size(); ++k)
        toneX[k] = static_cast<float>(kToneCurveStep * k);
    const Spline tone(toneX.data(), toneCurve, kToneCurvePoints);
    const std::span main = build.table(0);
    const auto last = static_cast<float>(main.size() - 1);
    for (size_t i = 0; i < main.size(); ++i) {
        const float L = std::min(kLTop, static_cast<float>(i) * kSampleMax16 / last);
        main[i] = tableEntry(lightness.invert(std::max(lightness.black(), tone(L))));
    }
    const auto companion = [&](const Curve& curve, std::span<uint16_t> table) {
        fillCompanion(Spline(curves.x.data(), curve.data(), kInverseLutPoints), main, table);
    };
    companion(curves.a, build.table(1));
    companion(curves.b, build.table(2));
    build.finish();
}

}  // namespace lumoxa

int icBuildGrayOutLuts(GrayConv_t* state, icRenderingIntent intent, const unsigned short* pair,
                       int shaping, float shapingParameter) {
    using namespace lumoxa;
    if (!hasCurves(state) || state->outEntries < 2) return icErrInvalid;
    return guarded([&] {
        // Curves for another tone are fitted without fade, deliberately, whatever fade the state's
        // own curves have: only the in tables are told it.
        buildOutTables(*state, {tonePair(pair), 0.0f, {}},
                       Tonality{intent == icPerceptual, shaping != 0, shapingParameter});
        return icSuccess;
    });
}
