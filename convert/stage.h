// SPDX-License-Identifier: Apache-2.0
//
// Stages: the exact form of a conversion. A chain of profiles becomes a list of stages, each of
// which turns rows of floating-point samples (a block of pixels, channel by channel) into rows.
//
// Between stages, device colours are 0..1 (inks too), Lab is L* 0..100 with a* and b* as they are,
// and XYZ is relative to a white of Y = 1; nothing is rounded, and clipped only where ICC.1 has a
// domain of 0..1: on the way into curves and grids and out of them.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lut/lut_stages.h"

namespace lumoxa::engine {

/// Most channels of a colour: ICC.1 has signatures for 2 to 15 (ICC.1:2010, 7.2.6).
inline constexpr int kMaxChannels = 15;

/// One step of a conversion. Immutable once made, so that any number of threads may run it.
class Stage {
  public:
    Stage(int inputs, int outputs) : inputs_(inputs), outputs_(outputs) {}
    virtual ~Stage() = default;
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    /// Converts a block in place: `rows` holds inputs() rows of `pixels` samples, then outputs().
    /// There are kMaxChannels rows.
    virtual void run(Row* rows, int pixels) const = 0;

    /// What it does, in a few words for reports: "curves", "matrix", "grid 33 x 33 x 33".
    virtual std::string describe() const = 0;

    int inputs() const { return inputs_; }
    int outputs() const { return outputs_; }

  private:
    int inputs_;
    int outputs_;
};

/// A stage and where it comes from.
struct PlacedStage {
    std::shared_ptr<const Stage> stage;
    std::string origin;  ///< tag and profile, or what made it: "A2B1 of profile 1", "ISO 18619"
};

/// Stages in the order in which colours pass through them.
class StageList {
  public:
    void append(std::shared_ptr<const Stage> stage, std::string origin) {
        stages_.push_back({std::move(stage), std::move(origin)});
    }
    void append(const StageList& other) {
        stages_.insert(stages_.end(), other.stages_.begin(), other.stages_.end());
    }

    /// Runs a block through all stages, in place.
    void run(Row* rows, int pixels) const {
        for (const PlacedStage& placed : stages_)
            placed.stage->run(rows, pixels);
    }

    /// One colour: `source` has the first stage's inputs, `destination` the last one's outputs.
    void convert(const float* source, int inputs, float* destination, int outputs) const;

    const std::vector<PlacedStage>& stages() const { return stages_; }
    std::vector<PlacedStage>& stages() { return stages_; }
    bool empty() const { return stages_.empty(); }

  private:
    std::vector<PlacedStage> stages_;
};

}  // namespace lumoxa::engine
