// SPDX-License-Identifier: Apache-2.0
#include "convert/octave_bytes.h"

#include "base/pcs_encoding.h"

namespace lumoxa::engine {
namespace {

constexpr float kTop = 255.0f;

/// The power of two below which a curve stays within half a byte of its value at 0.
float leastOf(const Curve& curve) {
    constexpr float kHalfByte = 0.5f / kTop;
    const float black = curve.at(0.0f);
    float least = 1.0f / 16;
    for (int octave = 4; octave < OctaveTable::kOctaves; ++octave) {
        const float value = curve.at(least);
        if (value - black < kHalfByte && black - value < kHalfByte) break;
        least /= 2;
    }
    return least;
}

}  // namespace

OctaveBytes::OctaveBytes(const Curve& curve, const OctaveTable& table) : least_(leastOf(curve)) {
    const int32_t first = firstStep();
    const int32_t last = std::bit_cast<int32_t>(1.0f) >> kRestBits;
    constexpr int32_t kMiddle = 1 << (kRestBits - 1);
    std::vector<float> values;
    values.reserve(static_cast<size_t>(last - first) + 1);
    for (int32_t step = first; step < last; ++step)
        values.push_back(std::bit_cast<float>((step << kRestBits) + kMiddle));
    values.push_back(1.0f);
    values.front() = 0.0f;
    table.run(values.data(), static_cast<int>(values.size()));
    bytes_.reserve(values.size());
    for (const float value : values)
        bytes_.push_back(roundClipped<uint8_t>(value * kTop));
}

}  // namespace lumoxa::engine
