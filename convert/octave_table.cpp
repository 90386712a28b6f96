// SPDX-License-Identifier: Apache-2.0
#include "convert/octave_table.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

#include "convert/shaper_kernels.h"

namespace lumoxa::engine {
namespace {

static_assert(1 << (23 - kOctaveRestBits) == OctaveTable::kSteps);
static_assert(kOctaveFirstStep == (127 - OctaveTable::kOctaves) * OctaveTable::kSteps);
constexpr uint32_t kEntries = OctaveTable::kOctaves * OctaveTable::kSteps + 1;

}  // namespace

OctaveTable::OctaveTable(const Curve& curve) : values_(kEntries + 1) {
    for (uint32_t i = 0; i < kEntries; ++i)
        values_[i] = std::bit_cast<float>((kOctaveFirstStep + i) << kOctaveRestBits);
    values_[0] = 0.0f;
    curve.run(values_.data(), static_cast<int>(kEntries));
    values_[kEntries] = values_[kEntries - 1];  // beside 1, with the weight 0
}

float OctaveTable::largestStray(const Curve& curve) const {
    constexpr uint32_t kHalfStep = 1U << (kOctaveRestBits - 1);
    constexpr uint32_t kChecked = 16 * kSteps;
    constexpr uint32_t kFirst = kOctaveFirstStep + kEntries - 1 - kChecked;
    std::vector<float> mine(kChecked);
    for (uint32_t i = 0; i < kChecked; ++i)
        mine[i] = std::bit_cast<float>(((kFirst + i) << kOctaveRestBits) + kHalfStep);
    std::vector<float> exact = mine;
    const auto count = static_cast<int>(mine.size());
    run(mine.data(), count);
    curve.run(exact.data(), count);
    float largest = 0.0f;
    for (size_t i = 0; i < mine.size(); ++i)
        largest = std::max(largest, std::fabs(mine[i] - exact[i]));
    return largest;
}

void OctaveTable::run(float* row, int count) const {
    const auto lookUp = shaperKernels().lookUpOctaves;
    const int whole = count / kLanes * kLanes;
    lookUp(values_.data(), row, whole);
    if (whole == count) return;
    float rest[kLanes] = {};
    std::copy(row + whole, row + count, rest);
    lookUp(values_.data(), rest, kLanes);
    std::copy_n(rest, count - whole, row + whole);
}

}  // namespace lumoxa::engine
