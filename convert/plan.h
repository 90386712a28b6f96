// SPDX-License-Identifier: Apache-2.0
//
// How pixels are converted: the cheapest way that stays close enough to the exact stages.
#pragma once

#include <cstddef>
#include <cstdint>

namespace lumoxa::engine {

/// Sample types, with the numbers of the interface (LMX_SAMPLES_...).
enum class SampleType : int32_t { kU8 = 1, kU16 = 5, kF32 = 9 };

constexpr size_t bytesOf(SampleType type) {
    return type == SampleType::kU8 ? 1 : type == SampleType::kU16 ? 2 : 4;
}

/// Converts runs of pixels. Immutable once made: any number of threads may use one.
class Plan {
  public:
    Plan(int inputs, int outputs) : inputs_(inputs), outputs_(outputs) {}
    virtual ~Plan() = default;
    Plan(const Plan&) = delete;
    Plan& operator=(const Plan&) = delete;

    /// Converts `pixels` packed pixels (channels interleaved, no gaps, aligned to their samples).
    /// Source and destination may be the same memory where their pixels have one size. A pixel's
    /// result doesn't depend on the run that it is part of.
    virtual void convert(SampleType in, const void* source, SampleType out, void* destination,
                         ptrdiff_t pixels) const = 0;

    int inputs() const { return inputs_; }
    int outputs() const { return outputs_; }

  private:
    int inputs_;
    int outputs_;
};

}  // namespace lumoxa::engine
