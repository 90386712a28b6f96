// SPDX-License-Identifier: Apache-2.0
#include "convert/shaper_plan.h"

#include <algorithm>
#include <utility>

#include "convert/octave_bytes.h"
#include "convert/octave_table.h"
#include "convert/shaper_kernels.h"

namespace lumoxa::engine {
namespace {

constexpr int kMost = 3;  // channels of a matrix profile

/// How far an octave table may stray from its curve where 16-bit results are wanted: behind the
/// matrix half of the 8 that they may be off; before it less, as curves behind it are steep in the
/// shadows: that of sRGB 12.9.
constexpr float kMostStrayBehind = 4.0f / kSampleMax16;
constexpr float kMostStrayBefore = kMostStrayBehind / 13;

/// A stage's curves as tables, one for each different curve. No stage: nothing but clipping.
class CurveTables {
  public:
    CurveTables(const CurveStage* stage, int channels, float mostStray) : mostStray_(mostStray) {
        for (int c = 0; c < channels; ++c)
            add(stage != nullptr ? stage->curves()[static_cast<size_t>(c)] : identityCurve());
    }
    const OctaveTable& of(int channel) const { return *table_[static_cast<size_t>(channel)]; }
    const Curve& curve(int channel) const { return *curve_[static_cast<size_t>(channel)]; }
    bool isIdentity(int channel) const { return curve(channel).isIdentity(); }
    /// The curve by its octave table, or by itself where it has kinks that the table cuts.
    void runClosely(int channel, float* row, int count) const {
        const bool close = close_[static_cast<size_t>(channel)];
        close ? of(channel).run(row, count) : curve(channel).run(row, count);
    }

  private:
    void add(const CurvePtr& curve) {
        const auto at = curve_.size();
        curve_.push_back(curve);
        for (size_t i = 0; i < at; ++i) {
            if (!(*curve_[i] == *curve)) continue;
            table_.push_back(table_[i]);
            close_.push_back(close_[i]);
            return;
        }
        table_.push_back(std::make_shared<OctaveTable>(*curve));
        close_.push_back(curve->isIdentity() || table_[at]->largestStray(*curve) <= mostStray_);
    }

    float mostStray_;
    std::vector<CurvePtr> curve_;
    std::vector<std::shared_ptr<const OctaveTable>> table_;
    std::vector<bool> close_;
};

/// Each column of a matrix times each level's value, so that a pixel of 8-bit samples costs
/// additions alone.
class ByteColumns {
  public:
    ByteColumns(const CurveTables& curves, const Affine& matrix, int inputs)
        : products_(static_cast<size_t>(inputs) * ColumnSums::kLevels * kOutputGroup) {
        float* product = products_.data();
        for (int c = 0; c < inputs; ++c) {
            for (int level = 0; level < ColumnSums::kLevels; ++level) {
                float value = static_cast<float>(level) / (ColumnSums::kLevels - 1);
                curves.curve(c).run(&value, 1);
                for (int r = 0; r < kMost; ++r)
                    product[r] = factorOf(matrix, r, c) * value;
                product += kOutputGroup;
            }
        }
        for (size_t r = 0; r < kMost; ++r)
            sums_.offsets[r] = static_cast<float>(matrix.offsets[r]);
        sums_.products = products_.data();
    }
    const ColumnSums& sums() const { return sums_; }

  private:
    static float factorOf(const Affine& matrix, int row, int column) {
        return static_cast<float>(
            matrix.factors[static_cast<size_t>(row)][static_cast<size_t>(column)]);
    }

    std::vector<float> products_;
    ColumnSums sums_ = {};
};

/// The bytes of each channel's last curve; idle lanes are like the first.
class ByteCurves {
  public:
    ByteCurves(const CurveTables& curves, int channels) {
        uint32_t places[kMost] = {};
        OctaveBytes bytes[kMost];
        for (int c = 0; c < channels; ++c)
            add(curves, c, bytes, places);
        for (int lane = 0; lane < kLanes; ++lane) {
            const int c = lane % kOutputGroup < channels ? lane % kOutputGroup : 0;
            to_.least[lane] = bytes[c].least();
            to_.restBits[lane] = static_cast<uint32_t>(bytes[c].restBits());
            to_.restMask[lane] = (uint32_t{1} << bytes[c].restBits()) - 1;
            to_.toStep[lane] = places[c] - bytes[c].firstStep();
        }
        to_.steps = steps_.data();
    }
    const ByteSteps& steps() const { return to_; }

  private:
    void add(const CurveTables& curves, int channel, OctaveBytes* bytes, uint32_t* places) {
        for (int c = 0; c < channel; ++c) {
            if (&curves.of(c) != &curves.of(channel)) continue;
            bytes[channel] = bytes[c];
            places[channel] = places[c];
            return;
        }
        bytes[channel] = OctaveBytes(curves.curve(channel));
        places[channel] = static_cast<uint32_t>(steps_.size());
        steps_.insert(steps_.end(), bytes[channel].steps().begin(), bytes[channel].steps().end());
    }

    std::vector<uint32_t> steps_;
    ByteSteps to_ = {};
};

class ShaperPlan : public Plan {
  public:
    ShaperPlan(const CurveStage* first, const AffineStage* matrix, const CurveStage* last,
               int inputs, int outputs, std::shared_ptr<const Plan> general)
        : Plan(inputs, outputs),
          in_(first, inputs, kMostStrayBefore),
          out_(last, outputs, kMostStrayBehind),
          matrix_(matrix != nullptr ? matrix->affine() : Affine(), "matrix"),
          hasMatrix_(matrix != nullptr),
          columns_(in_, matrix_.affine(), inputs),
          bytes_(out_, outputs),
          general_(std::move(general)) {
        for (size_t r = 0; r < kMost; ++r) {
            rows_.offsets[r] = columns_.sums().offsets[r];
            for (size_t c = 0; c < kMost; ++c)
                rows_.factors[r][c] = static_cast<float>(matrix_.affine().factors[r][c]);
        }
    }

    void convert(SampleType in, const void* source, SampleType out, void* destination,
                 ptrdiff_t pixels) const override {
        if (in == SampleType::kF32 || out == SampleType::kF32)
            return general_->convert(in, source, out, destination, pixels);
        const bool wideIn = in == SampleType::kU16, wideOut = out == SampleType::kU16;
        if (wideIn) {
            wideOut ? run<uint16_t, uint16_t>(source, destination, pixels)
                    : run<uint16_t, uint8_t>(source, destination, pixels);
        } else {
            wideOut ? run<uint8_t, uint16_t>(source, destination, pixels)
                    : run<uint8_t, uint8_t>(source, destination, pixels);
        }
    }

  private:
    template <class In, class Out>
    void run(const void* source, void* destination, ptrdiff_t pixels) const {
        const auto* s = static_cast<const In*>(source);
        auto* d = static_cast<Out*>(destination);
        const ShaperKernels& kernels = shaperKernels();
        Row rows[kMost] = {};
        Groups groups = {};
        for (ptrdiff_t done = 0; done < pixels; done += kBlockPixels) {
            const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, pixels - done));
            const In* const from = s + done * inputs();
            Out* const to = d + done * outputs();
            if constexpr (sizeof(In) == 1) {
                kernels.sumColumns(columns_.sums(), from, inputs(), n, groups);
                if constexpr (sizeof(Out) == 2) toRows(groups, n, rows);
            } else {
                load(kernels, from, n, rows);
                if constexpr (sizeof(Out) == 1) toGroups(rows, n, groups);
            }
            if constexpr (sizeof(Out) == 1) {
                kernels.storeBytes(bytes_.steps(), groups, outputs(), n, to);
            } else {
                store(kernels, rows, n, to);
            }
        }
    }

    void toRows(const Groups& groups, int pixels, Row* rows) const {
        for (int c = 0; c < outputs(); ++c) {
            for (int i = 0; i < pixels; ++i)
                rows[c][i] = groups[i * kOutputGroup + c];
        }
    }
    void toGroups(const Row* rows, int pixels, Groups& groups) const {
        for (int c = 0; c < outputs(); ++c) {
            for (int i = 0; i < pixels; ++i)
                groups[i * kOutputGroup + c] = rows[c][i];
        }
    }

    void load(const ShaperKernels& kernels, const uint16_t* source, int pixels, Row* rows) const {
        rowKernels().spreadWords(source, inputs(), pixels, 1.0f, rows);
        for (int c = 0; c < inputs(); ++c) {
            kernels.toUnit(rows[c], pixels);
            if (!in_.isIdentity(c)) in_.runClosely(c, rows[c], pixels);
        }
        if (!hasMatrix_) return;
        if (inputs() == kMost && outputs() == kMost) {
            kernels.applyMatrix(rows_, rows, pixels);
        } else {
            matrix_.run(rows, pixels);
        }
    }

    void store(const ShaperKernels& kernels, Row* rows, int pixels, uint16_t* destination) const {
        for (int c = 0; c < outputs(); ++c) {
            if (!out_.isIdentity(c)) out_.runClosely(c, rows[c], pixels);
        }
        kernels.storeWords(rows, outputs(), pixels, destination);
    }

    CurveTables in_, out_;
    AffineStage matrix_;
    bool hasMatrix_;
    MatrixRows rows_ = {};
    ByteColumns columns_;
    ByteCurves bytes_;
    std::shared_ptr<const Plan> general_;
};

/// The stage at a place if it is of that kind, with the place moved behind it; null otherwise.
template <class Kind>
const Kind* take(const std::vector<PlacedStage>& stages, size_t& at) {
    const auto* stage =
        at < stages.size() ? dynamic_cast<const Kind*>(stages[at].stage.get()) : nullptr;
    if (stage != nullptr) ++at;
    return stage;
}

}  // namespace

std::shared_ptr<const Plan> makeShaperPlan(const StageList& samplesToSamples, int inputs,
                                           int outputs, std::shared_ptr<const Plan> general) {
    if ((inputs != 1 && inputs != kMost) || (outputs != 1 && outputs != kMost)) return nullptr;
    const auto& stages = samplesToSamples.stages();
    size_t at = 0;
    const auto* first = take<CurveStage>(stages, at);
    const auto* matrix = take<AffineStage>(stages, at);
    const auto* last = take<CurveStage>(stages, at);
    if (at != stages.size() || (matrix == nullptr && inputs != outputs)) return nullptr;
    return std::make_shared<ShaperPlan>(first, matrix, last, inputs, outputs, std::move(general));
}

}  // namespace lumoxa::engine
