// SPDX-License-Identifier: Apache-2.0
#include "gray/gray_tables.h"

#include <algorithm>
#include <array>

#include "base/entry_guard.h"
#include "gray/inverse_lut.h"
#include "gray/minimize.h"
#include "gray/shaping.h"
#include "gray/smoothing.h"
#include "gray/spline.h"

namespace lumoxa {
namespace {

/// Whether a state has all that tables are built from.
bool hasCurves(const GrayConv_t* state) {
    if (state == nullptr || state->tagData == nullptr) return false;
    const float* const curves[] = {state->curveX, state->outCurveA, state->outCurveB,
                                   state->curveL, state->inCurveA,  state->inCurveB};
    return std::find(std::begin(curves), std::end(curves), nullptr) == std::end(curves) &&
           state->layoutFlag <= gray_layout::kMostLayout &&
           canFitGray(grayGridSize(*state), graySteps(*state), static_cast<int>(state->layoutFlag),
                      state->samples);
}

/// The three tables of one direction, in one block.
struct GrayTables {
    uint16_t*& first;
    uint16_t*& second;
    uint16_t*& third;
    uint32_t entries;
};

/// One build of tables. It makes room for them if there is none and fits the curves if the tone is
/// another one than the state was built for. Unless it is finished, the state is left without the
/// tables.
///
/// The state goes on to name the tone of its first build. So tables for any other tone are made
/// anew at each call, even for the tone of the call before.
class TableBuild {
  public:
    /// Throws std::bad_alloc.
    TableBuild(GrayConv_t& state, const GrayTables& tables, const ToneRequest& request)
        : tables_(tables), block_(tables.first) {
        const bool sameTone = request.pair == TonePair{state.keyFirst, state.keySecond};
        needed_ = block_ == nullptr || !sameTone;
        if (!needed_) {
            finish();
            return;
        }
        tables_.first = tables_.second = tables_.third = nullptr;
        if (block_ == nullptr) {
            block_ = requireZeroed<uint16_t>(size_t{3} * tables.entries * sizeof(uint16_t));
        }
        if (!sameTone) refitToneCurves(state, request);
    }

    /// Whether there is anything to build.
    bool needed() const { return needed_; }
    std::span<uint16_t> table(size_t i) const {
        return {block_.get() + i * tables_.entries, tables_.entries};
    }
    void finish() {
        tables_.first = block_.release();
        tables_.second = tables_.first + tables_.entries;
        tables_.third = tables_.second + tables_.entries;
    }

  private:
    GrayTables tables_;
    CHeapPtr<uint16_t> block_;
    bool needed_ = false;
};

/// The sample of a device value or an encoded Lab value.
uint16_t tableEntry(float value) {
    return roundClipped<uint16_t>(value);
}

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

void buildInTables(GrayConv_t& state, const ToneRequest& request) {
    TableBuild build(state, {state.inTable1, state.inTable2, state.inTable3, state.inEntries},
                     request);
    if (!build.needed()) return;
    const int points = graySteps(state) + 2;
    const float x0 = state.curveX[0];
    const float range = state.curveX[points - 1] - x0;
    const auto last = static_cast<float>(state.inEntries - 1);
    const auto sample = [&](const float* curve, std::span<uint16_t> table) {
        const Spline spline(state.curveX, curve, points);
        for (size_t i = 0; i < table.size(); ++i)
            table[i] = tableEntry(spline(x0 + static_cast<float>(i) * range / last));
    };
    sample(state.curveL, build.table(0));
    sample(state.inCurveA, build.table(1));
    sample(state.inCurveB, build.table(2));
    build.finish();
}

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

using namespace lumoxa;

int icBuildGrayInLuts(GrayConv_t* state, icRenderingIntent, const unsigned short* pair,
                      float parameter) {
    if (!hasCurves(state) || state->inEntries < 2) return icErrInvalid;
    return guarded([&] {
        buildInTables(*state, {tonePair(pair), parameter, {}});
        return icSuccess;
    });
}

int icBuildGrayOutLuts(GrayConv_t* state, icRenderingIntent intent, const unsigned short* pair,
                       int shaping, float shapingParameter) {
    if (!hasCurves(state) || state->outEntries < 2) return icErrInvalid;
    return guarded([&] {
        // Only the form for in tables has a fade, whatever fade the state's own curves have.
        buildOutTables(*state, {tonePair(pair), 0.0f, {}},
                       Tonality{intent == icPerceptual, shaping != 0, shapingParameter});
        return icSuccess;
    });
}
