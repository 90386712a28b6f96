// SPDX-License-Identifier: Apache-2.0
//
// One sample of a picture, converted between sample types where its number means a part of full
// scale (alpha, and whatever else is copied).
#pragma once

#include <cstdint>
#include <type_traits>

namespace lumoxa::engine {

/// Calls loop(channels) with a constant for the usual numbers, so that they have loops of their
/// own.
template <class Loop>
void withChannels(int channels, Loop loop) {
    switch (channels) {
        case 1:
            return loop(std::integral_constant<int, 1>{});
        case 3:
            return loop(std::integral_constant<int, 3>{});
        case 4:
            return loop(std::integral_constant<int, 4>{});
        default:
            return loop(channels);
    }
}

/// Full scale of 16 bits over that of 8 bits: 0..255 widen to 0..65535 exactly.
inline constexpr uint32_t kWiden = 257;

/// `value` between 0 and `largest`, to the nearest integer; NaN becomes 0. The product that comes
/// in here is exact in double: 24 bits of a float times 16.
template <class Sample>
Sample roundedSample(double value, double largest) {
    value = value > 0 ? value : 0;
    value = value < largest ? value : largest;
    return static_cast<Sample>(static_cast<int32_t>(value + 0.5));
}

/// Converts a sample to type `To`; the second argument only tells the type.
template <class Same>
Same converted(Same value, Same) {
    return value;
}
inline uint16_t converted(uint8_t value, uint16_t) {
    return static_cast<uint16_t>(value * kWiden);
}
inline uint8_t converted(uint16_t value, uint8_t) {
    return static_cast<uint8_t>((value + kWiden / 2) / kWiden);
}
inline float converted(uint8_t value, float) {
    return static_cast<float>(value) / 255.0f;
}
inline float converted(uint16_t value, float) {
    return static_cast<float>(value) / 65535.0f;
}
inline uint8_t converted(float value, uint8_t) {
    return roundedSample<uint8_t>(static_cast<double>(value) * 255.0, 255.0);
}
inline uint16_t converted(float value, uint16_t) {
    return roundedSample<uint16_t>(static_cast<double>(value) * 65535.0, 65535.0);
}

}  // namespace lumoxa::engine
