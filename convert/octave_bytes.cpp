// SPDX-License-Identifier: Apache-2.0
#include "convert/octave_bytes.h"

#include <cstdlib>

#include "base/pcs_encoding.h"

namespace lumoxa::engine {
namespace {

constexpr int kMantissaBits = 23;
/// Steps an octave, as powers of two: a rest of 16 bits is what a step has room for; the most are
/// for curves as steep as no display's.
constexpr int kFewestStepBits = kMantissaBits - OctaveBytes::kRestShift, kMostStepBits = 12;
/// No curve of a byte's range tells values below from 0: a root of 2.4 makes 1e-5 of 2^-40.
constexpr float kLeastOfAll = 0x1p-40f;

std::vector<uint8_t> bytesAt(const Curve& curve, const std::vector<uint32_t>& bits) {
    constexpr float kTop = 255.0f;
    std::vector<float> values;
    values.reserve(bits.size());
    for (const uint32_t value : bits)
        values.push_back(std::bit_cast<float>(value));
    curve.run(values.data(), static_cast<int>(values.size()));
    std::vector<uint8_t> bytes;
    bytes.reserve(bits.size());
    for (const float value : values)
        bytes.push_back(roundClipped<uint8_t>(value * kTop));
    return bytes;
}

float leastOf(const Curve& curve) {
    const uint8_t black = bytesAt(curve, {0}).front();
    float least = 1.0f / 16;
    while (least > kLeastOfAll && bytesAt(curve, {std::bit_cast<uint32_t>(least)}).front() != black)
        least /= 2;
    return least;
}

/// A step within which the byte changes, and what bisection knows of the place: it is after `from`,
/// at `to` at the latest.
struct Change {
    size_t step;
    uint8_t begin;
    uint32_t from, to;
};

void bisect(const Curve& curve, std::vector<Change>& changes, int rounds) {
    std::vector<uint32_t> middles(changes.size());
    for (; rounds > 0; --rounds) {
        for (size_t i = 0; i < changes.size(); ++i)
            middles[i] = changes[i].from + (changes[i].to - changes[i].from + 1) / 2;
        const std::vector<uint8_t> bytes = bytesAt(curve, middles);
        for (size_t i = 0; i < changes.size(); ++i) {
            if (bytes[i] != changes[i].begin) {
                changes[i].to = middles[i];
            } else {
                changes[i].from = middles[i];
            }
        }
    }
}

}  // namespace

OctaveBytes::OctaveBytes(const Curve& curve)
    : least_(leastOf(curve)), restBits_(kMantissaBits - kFewestStepBits) {
    while (!fill(curve) && restBits_ > kMantissaBits - kMostStepBits)
        --restBits_;
}

/// Makes the steps; false where a byte changes by more than 1 within one of them.
bool OctaveBytes::fill(const Curve& curve) {
    const uint32_t last = std::bit_cast<uint32_t>(1.0f) >> restBits_;
    const uint32_t restMask = (uint32_t{1} << restBits_) - 1;
    std::vector<uint32_t> ends;
    for (uint32_t step = firstStep(); step < last; ++step) {
        ends.push_back(step << restBits_);
        ends.push_back(ends.back() + restMask);
    }
    ends.insert(ends.end(), 2, last << restBits_);  // 1, whose step is this value alone
    const std::vector<uint8_t> bytes = bytesAt(curve, ends);
    bool narrow = true;
    std::vector<Change> changes;
    steps_.clear();
    for (size_t i = 0; i < bytes.size(); i += 2) {
        const uint8_t begin = bytes[i], end = bytes[i + 1];
        if (begin != end) changes.push_back({steps_.size(), begin, ends[i], ends[i + 1]});
        narrow = narrow && std::abs(begin - end) <= 1;
        steps_.push_back(begin | uint32_t{end} << kEndShift);
    }
    bisect(curve, changes, restBits_);
    for (const Change& change : changes)
        steps_[change.step] |= (change.to & restMask) << kRestShift;
    return narrow;
}

}  // namespace lumoxa::engine
