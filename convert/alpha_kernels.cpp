// SPDX-License-Identifier: Apache-2.0
//
// Premultiplied colours: divided by alpha before a conversion, multiplied with it afterwards, since
// a conversion isn't linear.
#include "base/byte_order.h"
#include "convert/line_kernels.h"
#include "convert/samples.h"

namespace lumoxa::engine {
namespace {

constexpr uint32_t kFull16 = 65535;

/// Rounds c * factor to the nearest integer. The exact quotient of two 16-bit integers is a tie or
/// at least 1/131070 away from one, so this much decides ties upwards, for whichever way the
/// factor was rounded, and nothing else.
constexpr double kHalfAndTie = 0.5 + 1e-6;

/// Division of a pixel's colours by its alpha: one reciprocal a pixel.
template <class From>
struct IntegerDivision {
    using Straight = uint16_t;
    static constexpr double kLargest = kFull16;
    double factor;

    explicit IntegerDivision(From alpha) : factor(alpha > 0 ? kLargest / alpha : 0) {}
    uint16_t operator()(From colour) const {
        const double quotient = colour * factor;
        return static_cast<uint16_t>(
            static_cast<int32_t>((quotient < kLargest ? quotient : kLargest) + kHalfAndTie));
    }
};

struct FloatDivision {
    using Straight = float;
    float alpha;

    explicit FloatDivision(float a) : alpha(a) {}
    float operator()(float colour) const { return alpha > 0 ? colour / alpha : 0; }
};

template <class From, class Division>
void unpremultiply(LinePart from, int channels, ptrdiff_t pixels, void* packed, void* alphas) {
    using Straight = typename Division::Straight;
    auto* to = static_cast<Straight*>(packed);
    auto* kept = static_cast<Straight*>(alphas);
    withChannels(channels, [=](auto count) {
        for (ptrdiff_t i = 0; i < pixels; ++i) {
            const From alpha = loadRaw<From>(from.at(i, count));
            kept[i] = converted(alpha, Straight{});
            const Division divided(alpha);
            for (ptrdiff_t c = 0; c < count; ++c)
                to[i * count + c] = divided(loadRaw<From>(from.at(i, c)));
        }
    });
}

/// Colour times alpha as a sample of type `To`, overloaded for what alpha is kept as.
inline void multiply(uint16_t colour, uint16_t alpha, uint16_t* to) {
    const uint32_t product = uint32_t{colour} * alpha;  // 65535 squared + 32767 is below 2^32
    *to = static_cast<uint16_t>((product + kFull16 / 2) / kFull16);
}

inline void multiply(uint16_t colour, uint16_t alpha, uint8_t* to) {
    constexpr uint64_t kOne = uint64_t{kFull16} * kWiden;
    *to = static_cast<uint8_t>((uint64_t{colour} * alpha + kOne / 2) / kOne);
}

inline void multiply(float colour, uint16_t alpha, float* to) {
    *to = colour * converted(alpha, float{});
}

inline void multiply(float colour, float alpha, float* to) {
    *to = alpha > 0 ? colour * alpha : 0;
}

/// At most the maximum that `To` has alpha as.
template <class To>
void multiply(uint16_t colour, float alpha, To* to) {
    constexpr double kOne = sizeof(To) == 1 ? kWiden : 1;
    const double part = alpha > 0 ? (alpha < 1 ? static_cast<double>(alpha) : 1.0) : 0.0;
    *to = roundedSample<To>(colour * part / kOne, kFull16 / kOne);
}

template <class Straight, class Alpha, class To>
void premultiply(const void* packed, const void* alphas, LinePart to, int channels,
                 ptrdiff_t pixels) {
    const auto* from = static_cast<const Straight*>(packed);
    const auto* alpha = static_cast<const Alpha*>(alphas);
    withChannels(channels, [=](auto count) {
        for (ptrdiff_t i = 0; i < pixels; ++i) {
            for (ptrdiff_t c = 0; c < count; ++c) {
                To sample;
                multiply(from[i * count + c], alpha[i], &sample);
                storeRaw(to.at(i, c), sample);
            }
        }
    });
}

template <class Alpha>
PremultiplyFn premultiplyWith(SampleType to) {
    switch (to) {
        case SampleType::kU8:
            return premultiply<uint16_t, Alpha, uint8_t>;
        case SampleType::kU16:
            return premultiply<uint16_t, Alpha, uint16_t>;
        default:
            return premultiply<float, Alpha, float>;
    }
}

}  // namespace

UnpremultiplyFn unpremultiplyKernel(SampleType from) {
    switch (from) {
        case SampleType::kU8:
            return unpremultiply<uint8_t, IntegerDivision<uint8_t>>;
        case SampleType::kU16:
            return unpremultiply<uint16_t, IntegerDivision<uint16_t>>;
        default:
            return unpremultiply<float, FloatDivision>;
    }
}

PremultiplyFn premultiplyKernel(SampleType from, SampleType to) {
    return from == SampleType::kF32 ? premultiplyWith<float>(to) : premultiplyWith<uint16_t>(to);
}

}  // namespace lumoxa::engine
