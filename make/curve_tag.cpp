// SPDX-License-Identifier: Apache-2.0
#include "make/curve_tag.h"

#include <algorithm>
#include <cmath>
#include <string>

#include "base/fault.h"
#include "base/power.h"
#include "lumoxa/types.h"

namespace lumoxa::engine {
namespace {

constexpr double kFullScale = 65535.0;
constexpr double kGammaUnit = 256.0;  // u8Fixed8
constexpr double kMostGamma = 256.0;
constexpr double kSameGamma = 1e-6;
constexpr uint32_t kFirstParametric = 0x04000000;  // the version that brought parametric curves
// The inverse of a curve is read from a table with as many entries over linear light. With 4096,
// the straight part of sRGB (up to 0.0031308) spans 12 of them and shadows stay exact.
constexpr size_t kSamples = 4096;
// Zero bytes behind entries, as icFillTrc has them.
constexpr size_t kEntriesTail = 2;

// IEC 61966-2-1: ((x + 0.055) / 1.055)^2.4 from 0.04045 on, x / 12.92 below it.
constexpr double kSrgbGamma = 2.4, kSrgbOffset = 0.055, kSrgbSlope = 12.92, kSrgbBreak = 0.04045;

[[noreturn]] void refuse(const std::string& rule) {
    throw FaultError(icErrInvalid, rule);
}

uint16_t sample(double value) {
    return static_cast<uint16_t>(std::floor(std::clamp(value, 0.0, 1.0) * kFullScale + 0.5));
}

template <class Curve>
TagBytes sampledTag(Curve curve) {
    std::vector<uint16_t> entries(kSamples);
    for (size_t i = 0; i < kSamples; ++i)
        entries[i] = sample(curve(static_cast<double>(i) / (kSamples - 1)));
    return curveTag(entries);
}

double srgbLight(double x) {
    return x <= kSrgbBreak ? x / kSrgbSlope
                           : power((x + kSrgbOffset) / (1 + kSrgbOffset), kSrgbGamma);
}

TagBytes srgbTag(bool parametric) {
    if (!parametric) return sampledTag(srgbLight);
    constexpr double kWhole = 1 + kSrgbOffset;
    return parametricTag(
        3, std::array{kSrgbGamma, 1 / kWhole, kSrgbOffset / kWhole, 1 / kSrgbSlope, kSrgbBreak});
}

// A table where one u8Fixed8 would be another gamma: 2.2 is no multiple of 1/256.
TagBytes gammaTag(double gamma, bool parametric) {
    if (!(gamma > 0 && gamma < kMostGamma)) refuse("a gamma is above 0 and below 256");
    if (parametric && toFixed16(gamma) > 0) return parametricTag(0, std::array{gamma});
    const double scaled = std::floor(gamma * kGammaUnit + 0.5);
    const bool holds = scaled >= 1 && scaled <= kFullScale;
    if (holds && std::abs(gamma - scaled / kGammaUnit) < kSameGamma)
        return entriesTag({static_cast<uint16_t>(scaled)});
    return sampledTag([=](double x) { return power(x, gamma); });
}

TagBytes tableTag(const std::vector<double>& table) {
    if (table.size() < kFewestCurveValues || table.size() > kMostCurveValues) {
        refuse("a tone curve has 2 to 4096 values, not " + std::to_string(table.size()));
    }
    std::vector<uint16_t> entries;
    double last = 0;
    for (const double value : table) {
        const std::string name = "value " + std::to_string(entries.size() + 1) + " of a tone curve";
        if (!(value >= 0 && value <= 1)) refuse(name + " is no number 0..1");
        if (value < last) refuse(name + " goes down");
        entries.push_back(sample(value));
        last = value;
    }
    return entriesTag(entries);
}

}  // namespace

TagBytes entriesTag(const std::vector<uint16_t>& entries) {
    TagBytes tag = curveTag(entries);
    tag.resize(tag.size() + kEntriesTail);
    return tag;
}

TagBytes toneCurveTag(const ToneCurveForm& curve, uint32_t version) {
    const bool parametric = version >= kFirstParametric;
    switch (curve.kind) {
        case ToneCurveForm::Kind::kSrgb:
            return srgbTag(parametric);
        case ToneCurveForm::Kind::kGamma:
            return gammaTag(curve.gamma, parametric);
        case ToneCurveForm::Kind::kTable:
            return tableTag(curve.table);
    }
    refuse("there is no such kind of tone curve");
}

}  // namespace lumoxa::engine
