// SPDX-License-Identifier: Apache-2.0
//
// Gray profiles of the synthetic ink printer, and what it can print.
#pragma once

#include <algorithm>

#include "tests/support/ink_printer.h"
#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

using Triple = InkPrinter::Triple;

struct Tone {
    double a = 0, b = 0;
};

/// A tone as the functions take it.
struct EncodedTone {
    unsigned short pair[2];
    EncodedTone(const Tone& t)
        : pair{static_cast<unsigned short>(std::lround(32768 + 256 * t.a)),
               static_cast<unsigned short>(std::lround(32768 + 256 * t.b))} {}
};

inline Bytes grayTag(int n, int steps, int layout, const std::vector<Triple>& patches) {
    Bytes tag = {'w', 'z', 'g', 'd', 0, 0, 0, 0, uint8_t(n >> 8), uint8_t(n), uint8_t(steps)};
    tag.push_back(static_cast<uint8_t>(layout));
    for (const Triple& patch : patches) {
        for (const double value : patch) {
            tag.resize(tag.size() + 4);
            put32(tag, tag.size() - 4, static_cast<uint32_t>(std::lround(value * 65536)));
        }
    }
    return tag;
}

inline ProfileBytes grayProfile(const Bytes& tag) {
    return ProfileBytes("prtr", "GRAY", "Lab ").addTag("wzgd", tag);
}

inline ProfileBytes grayProfile(int n = 5, int steps = 16) {
    return grayProfile(grayTag(n, steps, 0, InkPrinter().patches(n, steps)));
}

/// Neutral patches of those L*.
inline std::vector<Triple> grayPatches(const std::vector<double>& lightness) {
    std::vector<Triple> patches;
    for (const double L : lightness) {
        const double f = (L + 16) / 116, Y = L > 8 ? f * f * f : L / 903.3;
        patches.push_back({0.9 * Y, 0.95 * Y, 0.8 * Y});
    }
    return patches;
}

inline double labDistance(const Triple& p, const Triple& q) {
    return std::hypot(p[0] - q[0], p[1] - q[1], p[2] - q[2]);
}

inline double toneDistance(const Triple& lab, const Tone& tone) {
    return std::hypot(lab[1] - tone.a, lab[2] - tone.b);
}

inline Triple decodedLab(double L, double a, double b) {
    return {L / 652.8, (a - 32768) / 256, (b - 32768) / 256};
}

/// The Lab nearest to a wanted tone, which may change with L*, that the printer has at that amount
/// of black: found by trying toners on a grid whose cells shrink around the best of them.
template <class ToneAt>
Triple nearestTone(const InkPrinter& printer, double black, ToneAt wanted) {
    double centre[2] = {32767.5, 32767.5}, least = 1e9;
    Triple nearest{};
    for (double cell = 8192; cell > 4; cell *= 0.6) {
        const double around[2] = {centre[0], centre[1]};
        for (int i = 0; i < 81; ++i) {
            const double u = std::clamp(around[0] + cell * (i / 9 - 4), 0.0, 65535.0);
            const double v = std::clamp(around[1] + cell * (i % 9 - 4), 0.0, 65535.0);
            const Triple lab = printer.lab(printer.xyz(black, u, v));
            const double distance = toneDistance(lab, wanted(lab[0]));
            if (distance >= least) continue;
            least = distance, nearest = lab;
            centre[0] = u, centre[1] = v;
        }
    }
    return nearest;
}

}  // namespace lumoxa_test
