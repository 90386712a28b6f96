// SPDX-License-Identifier: Apache-2.0
//
// How far a plan is from the exact stages, in Delta E*ab (CIE 1976) seen through the destination's
// own profile, over random colours of the whole range, of the shadows and between the nodes of a
// grid.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "convert/chain.h"
#include "convert/plan.h"

namespace lumoxa::engine {

/// Largest mean and 99th percentile that a table may have (and is built for).
struct ErrorLimits {
    double mean, percentile;
};
constexpr ErrorLimits errorLimits(int inputs) {
    return inputs <= 3 ? ErrorLimits{0.1, 0.5} : ErrorLimits{0.2, 1.0};
}

struct ErrorFigures {
    double mean = 0, percentile = 0, largest = 0;
};

/// What was measured, by classes of colours.
struct MeasuredError {
    ErrorFigures whole, shadows, between;
    bool deltaE = true;  ///< false: no profile leads to Lab, figures are percents of a channel

    bool within(const ErrorLimits& limits) const;
    double largest() const;
};

/// A set of colours with their exact results, against which others are held.
class ErrorSet {
  public:
    /// @param samples  packed 16-bit samples of the chain's inputs
    ErrorSet(const Chain& chain, const Plan& exact, std::vector<uint16_t> samples);

    const std::vector<uint16_t>& samples() const { return samples_; }
    ptrdiff_t count() const { return count_; }

    /// @param results  packed 16-bit samples of the chain's outputs, one pixel for each colour
    ErrorFigures compare(const std::vector<uint16_t>& results) const;
    /// The same of what a plan gives for them.
    ErrorFigures compare(const Plan& plan) const;

  private:
    std::vector<float> seen(const std::vector<uint16_t>& results) const;

    const Chain& chain_;
    std::vector<uint16_t> samples_;
    ptrdiff_t count_;
    std::vector<float> exact_;
};

/// Colours of the whole range, and of the shadows: the darkest sixteenth of every channel, which is
/// the fullest of inks. Seeded, so that every run measures the same ones.
std::vector<uint16_t> randomSamples(int inputs, int count, uint32_t seed);
std::vector<uint16_t> shadowSamples(uint32_t space, int inputs, int count, uint32_t seed);
/// Midpoints of the cells of a grid of so many points.
std::vector<uint16_t> samplesBetween(int inputs, int points, int count, uint32_t seed);

}  // namespace lumoxa::engine
