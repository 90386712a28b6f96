// SPDX-License-Identifier: Apache-2.0
#include "combine/grid_sampler.h"

#include <algorithm>

namespace lumoxa {
namespace {

// Points of a slice: enough that starting a stage's threads does not count, few enough that the
// slices of every stage stay in the second-level cache and progress is reported often.
constexpr size_t kSlicePoints = 16384;

/// Walks the points of a grid in the order of the CLUT, the last input fastest.
class GridWalk {
  public:
    explicit GridWalk(const Lut16View& lut)
        : grid_(static_cast<size_t>(lut.grid())), counter_(static_cast<size_t>(lut.inputs())) {
        for (int i = 0; i < lut.grid(); ++i)
            node_.push_back(rampEntry(i, lut.grid()));
    }

    /// Writes the next `points` samples, packed.
    void write(size_t points, uint16_t* sample) {
        for (size_t p = 0; p < points; ++p) {
            for (const size_t k : counter_)
                *sample++ = node_[k];
            for (size_t i = counter_.size(); i-- > 0;) {
                if (++counter_[i] < grid_) break;
                counter_[i] = 0;
            }
        }
    }

  private:
    size_t grid_;
    std::vector<size_t> counter_;
    std::vector<uint16_t> node_;
};

}  // namespace

bool sampleGrid(const std::vector<BoundKernel>& stages, const Lut16View& lut,
                const CombineProgress& progress) {
    const auto outputs = static_cast<size_t>(lut.outputs());
    const auto inputs = static_cast<uint32_t>(lut.inputs());
    const auto points =
        static_cast<size_t>(clutEntries(inputs, static_cast<uint32_t>(lut.grid()), 1));
    const size_t slicePoints = std::min(points, kSlicePoints);
    size_t widest = 0;
    for (const BoundKernel& stage : stages) {
        widest = std::max(
            {widest, static_cast<size_t>(stage.inSamples), static_cast<size_t>(stage.outSamples)});
    }
    std::vector<uint16_t> from(slicePoints * widest);
    std::vector<uint16_t> to(slicePoints * widest);
    GridWalk walk(lut);
    uint16_t* clut = lut.clut();
    for (size_t done = 0; done < points;) {
        const size_t count = std::min(slicePoints, points - done);
        walk.write(count, from.data());
        for (const BoundKernel& stage : stages) {
            stage(from.data(), to.data(), static_cast<int>(count));
            from.swap(to);
        }
        clut = std::copy_n(from.data(), count * outputs, clut);
        done += count;
        if (progress.stopAt(static_cast<int>(done * 100 / points))) return false;
    }
    return true;
}

}  // namespace lumoxa
