// SPDX-License-Identifier: Apache-2.0
#include "convert/table_shape.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "convert/grid_stage.h"
#include "convert/octave_table.h"

namespace lumoxa::engine {
namespace {

/// Entries of a curve beside a grid: the most that lut16 tags hold (ICC.1:2010, 10.8).
constexpr size_t kCurveEntries = 4096;

Tables sampled(const std::vector<CurvePtr>& curves, const Curve* then) {
    Tables tables;
    std::vector<float> row(kCurveEntries);
    for (const CurvePtr& curve : curves) {
        for (size_t i = 0; i < row.size(); ++i)
            row[i] = static_cast<float>(i) / static_cast<float>(kCurveEntries - 1);
        curve->run(row.data(), static_cast<int>(row.size()));
        if (then != nullptr) then->run(row.data(), static_cast<int>(row.size()));
        std::vector<uint16_t>& table = tables.emplace_back();
        table.reserve(row.size());
        for (const float value : row)
            table.push_back(roundClipped<uint16_t>(value * kSampleMax16));
    }
    return tables;
}

/// The tables of a stage as they are where they are of one length that a tag can hold.
Tables tablesFor(const CurveStage& stage) {
    Tables tables;
    for (const CurvePtr& curve : stage.curves()) {
        const std::vector<uint16_t>* const table = curve->table();
        const bool fits = table != nullptr && table->size() <= kCurveEntries &&
                          (tables.empty() || tables.front().size() == table->size());
        if (!fits) return sampled(stage.curves(), nullptr);
        tables.push_back(*table);
    }
    return tables;
}

// L*/100 of Y as a parametric curve, and back (CIE 15).
CurvePtr lightness() {
    constexpr double kStretch = 1.16 * 1.16 * 1.16;
    return parametricCurve(
        {1.0 / 3, kStretch, 0, 9.03296296296296, 0.008856451679035631, -0.16, 0});
}
CurvePtr lightnessToY() {
    return parametricCurve({3, 1 / 1.16, 0.16 / 1.16, 1 / 9.03296296296296, 0.08, 0, 0});
}

/// The inverse tone curve of a display, continued beyond 0 and 1 and mapped into the range of a
/// grid: the edge of the display's gamut then lies in the table behind the grid, as sharp as it is,
/// and not in the grid, whose cells would blur it.
class UnclippedCurve : public Curve {
  public:
    // Of the entries behind the grid: where the channel is 0 and where it is 1. The darkest values
    // of saturated inks are about -0.5 of a display's range.
    static constexpr int kZero = 1200, kOne = 3600;

    explicit UnclippedCurve(CurvePtr curve)
        : curve_(std::move(curve)),
          octaves_(*curve_),
          close_(octaves_.largestStray(*curve_) <= kMostStray),
          slope_((1.0f - curve_->at(1.0f - kStep)) / kStep) {}

    void run(float* row, int count) const override {
        for (int done = 0; done < count; done += kBlockPixels)
            runBlock(row + done, std::min(kBlockPixels, count - done));
    }
    std::string describe() const override { return "unclipped " + curve_->describe(); }
    CurvePtr inverse() const override { return curve_->inverse(); }

    /// What leads from the grid's range to samples.
    static std::vector<uint16_t> clip() {
        std::vector<uint16_t> table(kCurveEntries);
        for (int i = 0; i < static_cast<int>(kCurveEntries); ++i) {
            const float value = static_cast<float>(i - kZero) / (kOne - kZero);
            table[static_cast<size_t>(i)] =
                roundClipped<uint16_t>(clipped(value, 1.0f) * kSampleMax16);
        }
        return table;
    }

  private:
    static constexpr float kStep = 1.0f / 64;
    /// What rounding a node may take.
    static constexpr float kMostStray = 0.5f / kSampleMax16;

    void runBlock(float* row, int count) const {
        constexpr float kPerEntry = 1.0f / static_cast<float>(kCurveEntries - 1);
        Row value;
        for (int i = 0; i < count; ++i)
            value[i] = std::fabs(row[i]);
        close_ ? octaves_.run(value, count) : curve_->run(value, count);  // clips to 1
        for (int i = 0; i < count; ++i) {
            const float beyond = std::max(std::fabs(row[i]) - 1.0f, 0.0f) * slope_;
            const float size = value[i] + beyond;
            row[i] = (kZero + (kOne - kZero) * (row[i] < 0.0f ? -size : size)) * kPerEntry;
        }
    }

    CurvePtr curve_;
    OctaveTable octaves_;  // a tenth of the curve's time, where it is close
    bool close_;
    float slope_;  // at 1
};

/// The shape whose gamut is cut off behind the grid.
Shape unclippedShape(const Shape& in, const CurveStage& last) {
    Shape shape = {in.inTables, {}, slice(in.tail, 0, in.tail.stages().size() - 1), in.what};
    std::vector<CurvePtr> curves;
    curves.reserve(last.curves().size());
    for (const CurvePtr& curve : last.curves()) {
        const auto& known = last.curves();
        const auto same =
            std::find_if(known.begin(), known.begin() + static_cast<ptrdiff_t>(curves.size()),
                         [&](const CurvePtr& other) { return *other == *curve; });
        const auto at = static_cast<size_t>(same - known.begin());
        curves.push_back(at < curves.size() ? curves[at] : std::make_shared<UnclippedCurve>(curve));
    }
    shape.tail.append(std::make_shared<CurveStage>(std::move(curves)), "");
    shape.outTables.assign(last.curves().size(), UnclippedCurve::clip());
    shape.what += ", the gamut's edge behind";
    return shape;
}

}  // namespace

StageList slice(const StageList& list, size_t from, size_t to) {
    StageList out;
    for (size_t i = from; i < to; ++i)
        out.append(list.stages()[i].stage, list.stages()[i].origin);
    return out;
}

std::vector<Shape> shapesOf(const StageList& list) {
    std::vector<Shape> ins;
    ins.push_back({{}, {}, list, "no curves before"});
    if (const auto* first = stageAt<CurveStage>(list, 0)) {
        StageList rest = slice(list, 1, list.stages().size());
        if (stageAt<AffineStage>(list, 1) == nullptr) {
            ins.push_back({tablesFor(*first), {}, rest, "the profile's curves before"});
        } else {
            StageList tail;
            tail.append(std::make_shared<CurveStage>(
                            std::vector<CurvePtr>(first->curves().size(), lightnessToY())),
                        "");
            tail.append(rest);
            ins.push_back(
                {sampled(first->curves(), lightness().get()), {}, tail, "lightness before"});
        }
    }
    std::vector<Shape> shapes;
    for (const Shape& in : ins) {
        shapes.push_back(in);
        shapes.back().what += ", none behind";
        const size_t size = in.tail.stages().size();
        const auto* last = size > 1 ? stageAt<CurveStage>(in.tail, size - 1) : nullptr;
        if (last == nullptr) continue;
        if (stageAt<GridStage>(in.tail, size - 2) != nullptr) {
            shapes.push_back({in.inTables, tablesFor(*last), slice(in.tail, 0, size - 1),
                              in.what + ", the profile's behind"});
        } else if (stageAt<AffineStage>(in.tail, size - 2) != nullptr) {
            shapes.push_back(unclippedShape(in, *last));
        }
    }
    return shapes;
}

}  // namespace lumoxa::engine
