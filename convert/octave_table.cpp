// SPDX-License-Identifier: Apache-2.0
#include "convert/octave_table.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>

namespace lumoxa::engine {
namespace {

// IEEE single precision: eight bits of exponent, 23 of fraction, of which the upper eight choose
// the step.
constexpr int kFractionBits = 23;
constexpr int kRestBits = kFractionBits - 8;
static_assert(1 << (kFractionBits - kRestBits) == OctaveTable::kSteps);
constexpr uint32_t kRestMask = (1U << kRestBits) - 1;
constexpr uint32_t kOneBits = 127U << kFractionBits;
constexpr uint32_t kLeastBits = kOneBits - (uint32_t{OctaveTable::kOctaves} << kFractionBits);
constexpr uint32_t kLeastStep = kLeastBits >> kRestBits;
constexpr uint32_t kEntries = OctaveTable::kOctaves * OctaveTable::kSteps + 1;

}  // namespace

OctaveTable::OctaveTable(const Curve& curve) : values_(kEntries + 1) {
    for (uint32_t i = 0; i < kEntries; ++i)
        values_[i] = std::bit_cast<float>((kLeastStep + i) << kRestBits);
    values_[0] = 0.0f;
    curve.run(values_.data(), static_cast<int>(kEntries));
    values_[kEntries] = values_[kEntries - 1];  // beside 1, with the weight 0
}

float OctaveTable::largestStray(const Curve& curve) const {
    constexpr uint32_t kHalfStep = 1U << (kRestBits - 1);
    constexpr uint32_t kChecked = 16 * kSteps;
    constexpr uint32_t kFirst = kLeastStep + kEntries - 1 - kChecked;
    std::vector<float> mine(kChecked);
    for (uint32_t i = 0; i < kChecked; ++i)
        mine[i] = std::bit_cast<float>(((kFirst + i) << kRestBits) + kHalfStep);
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
    constexpr int kStrip = 16;
    const float least = std::bit_cast<float>(kLeastBits);
    const float* const values = values_.data();
    for (int done = 0; done < count; done += kStrip) {
        float* x = row + done;
        const int n = std::min(kStrip, count - done);
        uint32_t step[kStrip];
        float rest[kStrip];
        for (int i = 0; i < n; ++i) {
            const float low = x[i] > least ? x[i] : least;  // what is not a number, too
            const auto bits = std::bit_cast<uint32_t>(low < 1.0f ? low : 1.0f);
            step[i] = (bits >> kRestBits) - kLeastStep;
            rest[i] = static_cast<float>(static_cast<int32_t>(bits & kRestMask)) *
                      (1.0f / static_cast<float>(kRestMask + 1));
        }
        for (int i = 0; i < n; ++i) {
            const float low = values[step[i]];
            x[i] = low + (values[step[i] + 1] - low) * rest[i];
        }
    }
}

}  // namespace lumoxa::engine
