// SPDX-License-Identifier: Apache-2.0
#include "lut/curve_sampling.h"

#include <algorithm>

#include "base/pcs_encoding.h"
#include "base/power.h"
#include "lut/lut_tag.h"
#include "lut/parametric_curve.h"
#include "lut/table_lookup.h"

namespace lumoxa {
namespace {

constexpr double kGammaOne = 256.0;  // u8Fixed8: a single entry of 256 is a gamma of 1

void startWithIdentity(std::vector<uint16_t>& table) {
    if (table.empty()) table = {0, 65535};
}

uint16_t interpolated(const TagView& curve, int64_t count, double position) {
    const int64_t k = std::min(static_cast<int64_t>(position), count - 2);
    const auto entry = [&](int64_t i) {
        return double(curve.u16(lut_layout::kCurveData + 2 * static_cast<uint32_t>(i)));
    };
    const double value = entry(k) + (entry(k + 1) - entry(k)) * (position - static_cast<double>(k));
    return roundWrapped<uint16_t>(value);
}

}  // namespace

void icResampleCurv(const uint8_t* curve, int entries, uint16_t* destination) {
    const TagView view{curve, false};
    const int64_t count = view.u32(lut_layout::kCurveCount);
    for (int i = 0; i < entries; ++i) {
        const double x = static_cast<double>(i) / (entries - 1);
        if (count == 0) {
            destination[i] = roundWrapped<uint16_t>(x * 65535.0);
        } else if (count == 1) {
            const double gamma = view.u16(lut_layout::kCurveData) / kGammaOne;
            destination[i] = roundClipped<uint16_t>(power(x, gamma) * 65535.0);
        } else {
            destination[i] = interpolated(view, count, x * static_cast<double>(count - 1));
        }
    }
}

void icSampleParaCurve(const uint8_t* curve, int entries, uint16_t* destination) {
    const ParametricCurve parametric(TagView{curve, false});
    if (!parametric.known()) return;
    for (int i = 0; i < entries; ++i) {
        const float x = static_cast<float>(i) / static_cast<float>(entries - 1);
        const float y = parametric.inPowerSegment(x)
                            ? parametric.powerTerm(x) + parametric.powerOffset()
                            : parametric.linear(x);
        const float value = y * kSampleMax16;
        destination[i] =
            parametric.type() == 0 ? roundWrapped<uint16_t>(value) : roundClipped<uint16_t>(value);
    }
}

void icLabCurveToLegacy(std::vector<uint16_t>& table) {
    constexpr size_t kFewestEntries = 257;  // one for each step of 255 in the legacy encoding
    constexpr float kStretch = 1.0039063f;  // 257 / 256: 65280 in the legacy encoding is L* = 100
    startWithIdentity(table);
    const auto last = static_cast<float>(table.size() - 1);
    const auto lastSegment = static_cast<int32_t>(table.size() - 2);
    std::vector<uint16_t> stretched(std::max(table.size(), kFewestEntries));
    for (size_t i = 0; i < stretched.size(); ++i) {
        const float x = static_cast<float>(i) / static_cast<float>(stretched.size() - 1) * kStretch;
        const float position = std::min(1.0f, x) * last;
        stretched[i] = roundWrapped<uint16_t>(lookUp(table.data(), lastSegment, position));
    }
    table = std::move(stretched);
}

void icLabCurveFromLegacy(std::vector<uint16_t>& table) {
    startWithIdentity(table);
    for (uint16_t& entry : table) {
        entry = roundWrapped<uint16_t>(static_cast<float>(entry) * float{kLabLMax} / kSampleMax16);
    }
}

}  // namespace lumoxa
