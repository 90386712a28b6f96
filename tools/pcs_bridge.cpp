// SPDX-License-Identifier: Apache-2.0
#include "tools/pcs_bridge.h"

#include <algorithm>
#include <cmath>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Triple = std::array<double, 3>;

// The library's 16-bit encodings: XYZ with 1.0 = 32768; Lab with 652.8 and 256 a unit.
constexpr double kXyzOne = 32768;
constexpr double kLStep = 652.8;
constexpr double kAbStep = 256;
constexpr double kAbZero = 32768;

// CIE 15: the cube root, and its tangent below (6/29)^3.
constexpr double kBreak = 6.0 / 29;

double cieF(double t) {
    return t > kBreak * kBreak * kBreak ? std::cbrt(t) : t / (3 * kBreak * kBreak) + 4.0 / 29;
}

double cieInverse(double f) {
    return f > kBreak ? f * f * f : 3 * kBreak * kBreak * (f - 4.0 / 29);
}

Triple xyzOfLab(const uint16_t* lab, const Triple& white) {
    const double fy = (lab[0] / kLStep + 16) / 116;
    return {cieInverse(fy + (lab[1] - kAbZero) / kAbStep / 500) * white[0],
            cieInverse(fy) * white[1],
            cieInverse(fy - (lab[2] - kAbZero) / kAbStep / 200) * white[2]};
}

Triple labOfXyz(const Triple& xyz, const Triple& white) {
    const double fx = cieF(xyz[0] / white[0]);
    const double fy = cieF(xyz[1] / white[1]);
    const double fz = cieF(xyz[2] / white[2]);
    return {(116 * fy - 16) * kLStep, 500 * (fx - fy) * kAbStep + kAbZero,
            200 * (fy - fz) * kAbStep + kAbZero};
}

uint16_t rounded(double value) {
    return static_cast<uint16_t>(std::clamp(value + 0.5, 0.0, 65535.0));
}

Triple triple(const icXYZNumber& xyz) {
    return {xyz.X / 65536.0, xyz.Y / 65536.0, xyz.Z / 65536.0};
}

// Media white over connection-space white; 1 where the profile has no white of its own.
Triple mediaRatio(const Profile& profile) {
    constexpr size_t kNumbers = 8;  // behind type and reserved bytes
    const std::optional<Tag> tag = profile.tag(fourCc("wtpt"));
    if (!tag || tag->bytes.size() < kNumbers + 12) return {1, 1, 1};
    const Triple pcs = triple(profile.header().illuminant);
    Triple ratio = {1, 1, 1};
    for (size_t c = 0; c < 3; ++c) {
        const auto fixed = static_cast<int32_t>(bigEndian32(tag->bytes.data() + kNumbers + 4 * c));
        if (fixed > 0 && pcs[c] > 0) ratio[c] = fixed / 65536.0 / pcs[c];
    }
    return ratio;
}

}  // namespace

PcsBridge::PcsBridge(const Profile& from, const Profile& to, uint32_t fromSpace, uint32_t toSpace,
                     bool absolute)
    : fromLab_(fromSpace == kLab),
      toLab_(toSpace == kLab),
      white_(triple(from.header().illuminant)) {
    for (double& w : white_) {
        if (w <= 0) w = 1;
    }
    if (absolute) {
        const Triple source = mediaRatio(from);
        const Triple target = mediaRatio(to);
        for (size_t c = 0; c < 3; ++c)
            scale_[c] = source[c] / target[c];
    }
    idle_ = fromLab_ == toLab_ && scale_ == std::array<double, 3>{1, 1, 1};
}

void PcsBridge::apply(uint16_t* samples, size_t pixels) const {
    if (idle_) return;
    for (size_t i = 0; i < pixels; ++i, samples += 3) {
        Triple xyz = fromLab_
                         ? xyzOfLab(samples, white_)
                         : Triple{samples[0] / kXyzOne, samples[1] / kXyzOne, samples[2] / kXyzOne};
        for (size_t c = 0; c < 3; ++c)
            xyz[c] *= scale_[c];
        const Triple out = toLab_ ? labOfXyz(xyz, white_)
                                  : Triple{xyz[0] * kXyzOne, xyz[1] * kXyzOne, xyz[2] * kXyzOne};
        std::transform(out.begin(), out.end(), samples, rounded);
    }
}

}  // namespace lumoxa_tool
