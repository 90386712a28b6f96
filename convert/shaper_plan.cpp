// SPDX-License-Identifier: Apache-2.0
#include "convert/shaper_plan.h"

#include <algorithm>
#include <utility>

#include "convert/octave_bytes.h"
#include "convert/octave_table.h"

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

constexpr int kLanes = 4;  // of a vector of floats; the fourth is idle

/// What 8-bit samples contribute to the matrix's results: each column times each level's value, so
/// that a pixel costs additions alone.
class ByteColumns {
  public:
    ByteColumns(const CurveTables& curves, const Affine& matrix, int inputs) {
        for (int c = 0; c < kMost; ++c) {
            for (int level = 0; level < kLevels; ++level) {
                float value = static_cast<float>(level) / (kLevels - 1);
                if (c < inputs) curves.curve(c).run(&value, 1);
                for (int r = 0; r < kLanes; ++r) {
                    const float factor = r < kMost && c < inputs ? factorOf(matrix, r, c) : 0.0f;
                    products_[c][level][r] = factor * value;
                }
            }
        }
        for (size_t r = 0; r < kMost; ++r)
            offsets_[r] = static_cast<float>(matrix.offsets[r]);
    }

    /// Three samples to four lanes, in the order in which AffineStage adds.
    void run(const uint8_t* sample, float* lanes) const {
        const float* const first = products_[0][sample[0]];
        const float* const second = products_[1][sample[1]];
        const float* const third = products_[2][sample[2]];
        for (int r = 0; r < kLanes; ++r)
            lanes[r] = first[r] + second[r] + third[r] + offsets_[r];
    }
    /// One sample likewise.
    void runGray(const uint8_t* sample, float* lanes) const {
        const float* const only = products_[0][sample[0]];
        for (int r = 0; r < kLanes; ++r)
            lanes[r] = only[r] + offsets_[r];
    }

  private:
    static constexpr int kLevels = 256;

    static float factorOf(const Affine& matrix, int row, int column) {
        return static_cast<float>(
            matrix.factors[static_cast<size_t>(row)][static_cast<size_t>(column)]);
    }

    float products_[kMost][kLevels][kLanes];
    float offsets_[kLanes] = {};
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
          general_(std::move(general)) {
        for (int c = 0; c < outputs; ++c)
            addBytes(c);
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
    using Block = float[kBlockPixels][kLanes];

    void addBytes(int channel) {
        for (int c = 0; c < channel; ++c) {
            if (&out_.of(c) == &out_.of(channel))
                return bytes_.push_back(bytes_[static_cast<size_t>(c)]);
        }
        bytes_.push_back(std::make_shared<const OctaveBytes>(out_.curve(channel)));
    }

    template <class In, class Out>
    void run(const void* source, void* destination, ptrdiff_t pixels) const {
        const auto* s = static_cast<const In*>(source);
        auto* d = static_cast<Out*>(destination);
        Block block;
        for (ptrdiff_t done = 0; done < pixels; done += kBlockPixels) {
            const int n = static_cast<int>(std::min<ptrdiff_t>(kBlockPixels, pixels - done));
            load(s + done * inputs(), n, block);
            if (outputs() == kMost) {
                store<kMost>(block, n, d + done * kMost);
            } else {
                store<1>(block, n, d + done);
            }
        }
    }

    void load(const uint8_t* source, int pixels, Block& block) const {
        if (inputs() == kMost) {
            for (int i = 0; i < pixels; ++i)
                columns_.run(source + i * kMost, block[i]);
        } else {
            for (int i = 0; i < pixels; ++i)
                columns_.runGray(source + i, block[i]);
        }
    }

    void load(const uint16_t* source, int pixels, Block& block) const {
        Row rows[kMost];
        const int channels = inputs();
        for (int c = 0; c < channels; ++c) {
            for (int i = 0; i < pixels; ++i)
                rows[c][i] = static_cast<float>(source[i * channels + c]) / kSampleMax16;
            if (!in_.isIdentity(c)) in_.runClosely(c, rows[c], pixels);
        }
        if (hasMatrix_) matrix_.run(rows, pixels);
        for (int c = 0; c < outputs(); ++c) {
            for (int i = 0; i < pixels; ++i)
                block[i][c] = rows[c][i];
        }
    }

    template <int Channels>
    void store(const Block& block, int pixels, uint8_t* destination) const {
        ByteLookup bytes[Channels];
        for (int c = 0; c < Channels; ++c)
            bytes[c] = bytes_[static_cast<size_t>(c)]->lookup();
        for (int i = 0; i < pixels; ++i) {
            for (int c = 0; c < Channels; ++c)
                destination[i * Channels + c] = bytes[c].at(block[i][c]);
        }
    }

    template <int Channels>
    void store(const Block& block, int pixels, uint16_t* destination) const {
        Row row;
        for (int c = 0; c < Channels; ++c) {
            for (int i = 0; i < pixels; ++i)
                row[i] = block[i][c];
            if (!out_.isIdentity(c)) out_.runClosely(c, row, pixels);
            for (int i = 0; i < pixels; ++i)
                destination[i * Channels + c] = roundClipped<uint16_t>(row[i] * kSampleMax16);
        }
    }

    CurveTables in_, out_;
    AffineStage matrix_;
    bool hasMatrix_;
    ByteColumns columns_;
    std::vector<std::shared_ptr<const OctaveBytes>> bytes_;
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
