// SPDX-License-Identifier: Apache-2.0
#include "tools/sampled_curves.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <optional>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

// The inverse of a curve is read from a table with as many entries over linear light. With 4096,
// the straight part of sRGB (up to 0.0031308) spans 12 of them and shadows stay exact.
constexpr uint32_t kCurveEntries = 4096;

constexpr uint32_t kSampledType = fourCc("curv");
constexpr uint32_t kParametricType = fourCc("para");

// A curve tag's content as numbers.
struct ToneCurve {
    uint32_t type = 0;
    uint32_t function = 0;        // of a parametric curve
    std::vector<double> numbers;  // parameters, or entries over 0..1

    double at(double x) const { return type == kParametricType ? parametric(x) : sampled(x); }

  private:
    double sampled(double x) const {
        if (numbers.empty()) return x;
        if (numbers.size() == 1) return std::pow(x, numbers[0] * 65535.0 / 256.0);  // u8Fixed8
        const double position = x * static_cast<double>(numbers.size() - 1);
        const size_t first = std::min(static_cast<size_t>(position), numbers.size() - 2);
        const double fraction = position - static_cast<double>(first);
        return numbers[first] + (numbers[first + 1] - numbers[first]) * fraction;
    }

    // ICC.1:2010, 10.15: g, a, b, c, d, e, f. Types 1 and 2 break where a*x + b is 0.
    double parametric(double x) const {
        std::array<double, 7> p = {1, 1, 0, 0, 0, 0, 0};
        std::copy(numbers.begin(), numbers.end(), p.begin());
        const double base = p[1] * x + p[2];
        const bool inPowerSegment = function < 3 ? base >= 0 : x >= p[4];
        const double power = std::pow(std::max(base, 0.0), p[0]);
        switch (function) {
            case 2:
                return (inPowerSegment ? power : 0) + p[3];
            case 3:
            case 4:
                return inPowerSegment ? power + p[5] : p[3] * x + p[6];
            default:
                return inPowerSegment ? power : 0;
        }
    }
};

std::optional<ToneCurve> readSampled(const uint8_t* tag, uint64_t size) {
    const uint64_t count = bigEndian32(tag + 8);
    if (size < 12 + 2 * count) return std::nullopt;
    ToneCurve curve = {kSampledType, 0, {}};
    for (uint64_t i = 0; i < count; ++i)
        curve.numbers.push_back(bigEndian16(tag + 12 + 2 * i) / 65535.0);
    return curve;
}

std::optional<ToneCurve> readParametric(const uint8_t* tag, uint64_t size) {
    static constexpr uint64_t kParameters[] = {1, 3, 4, 5, 7};
    ToneCurve curve = {kParametricType, bigEndian16(tag + 8), {}};
    if (curve.function >= std::size(kParameters)) return std::nullopt;
    const uint64_t count = kParameters[curve.function];
    if (size < 12 + 4 * count) return std::nullopt;
    for (uint64_t i = 0; i < count; ++i)
        curve.numbers.push_back(static_cast<int32_t>(bigEndian32(tag + 12 + 4 * i)) / 65536.0);
    return curve;
}

std::optional<ToneCurve> readCurve(const uint8_t* tag, uint64_t size) {
    if (size < 12) return std::nullopt;
    const uint32_t type = bigEndian32(tag);
    if (type == kSampledType) return readSampled(tag, size);
    return type == kParametricType ? readParametric(tag, size) : std::nullopt;
}

struct CurveEntry {
    size_t index;  // in the tag table
    ToneCurve curve;
};

// The curves of all signatures, or nothing when one is missing or faulty.
std::vector<CurveEntry> readCurves(const Bytes& profile, const std::vector<icTag_safe64bit>& tags,
                                   const std::vector<uint32_t>& signatures) {
    std::vector<CurveEntry> curves;
    for (const uint32_t signature : signatures) {
        const auto entry = std::find_if(
            tags.begin(), tags.end(), [=](const auto& tag) { return tag.signature == signature; });
        if (entry == tags.end()) return {};
        auto curve = readCurve(profile.data() + entry->location, entry->size);
        if (!curve) return {};
        curves.push_back({static_cast<size_t>(entry - tags.begin()), std::move(*curve)});
    }
    return curves;
}

// Puts a tag at the end of a profile and makes an entry of the tag table lead to it.
void replaceTag(Bytes& profile, size_t index, const Bytes& tag) {
    profile.resize((profile.size() + 3) / 4 * 4);  // tags start on 4-byte boundaries
    Bytes place;
    put32(place, static_cast<uint32_t>(profile.size()));
    put32(place, static_cast<uint32_t>(tag.size()));
    profile.insert(profile.end(), tag.begin(), tag.end());
    constexpr size_t kFirstPlace = 128 + 4 + 4;  // after header, count and the first signature
    std::copy(place.begin(), place.end(),
              profile.begin() + static_cast<ptrdiff_t>(kFirstPlace + 12 * index));
    Bytes size;
    put32(size, static_cast<uint32_t>(profile.size()));
    std::copy(size.begin(), size.end(), profile.begin());
}

}  // namespace

std::vector<uint8_t> sampledCurveTag(const std::function<double(double)>& curve) {
    Bytes tag;
    put32(tag, kSampledType);
    put32(tag, 0);
    put32(tag, kCurveEntries);
    for (uint32_t i = 0; i < kCurveEntries; ++i) {
        const double value = std::clamp(curve(i / (kCurveEntries - 1.0)), 0.0, 1.0);
        put16(tag, static_cast<uint32_t>(std::lround(value * 65535.0)));
    }
    return tag;
}

std::vector<uint8_t> withSampledCurves(const std::vector<uint8_t>& profile,
                                       const std::vector<icTag_safe64bit>& tags) {
    Bytes result;
    const std::vector<std::vector<uint32_t>> groups = {
        {fourCc("rTRC"), fourCc("gTRC"), fourCc("bTRC")}, {fourCc("kTRC")}};
    for (const std::vector<uint32_t>& signatures : groups) {
        const std::vector<CurveEntry> curves = readCurves(profile, tags, signatures);
        const bool anyParametric = std::any_of(
            curves.begin(), curves.end(),
            [](const CurveEntry& entry) { return entry.curve.type == kParametricType; });
        if (!anyParametric) continue;
        if (result.empty()) result = profile;
        // All of a group: the red curve's length is taken for the three.
        for (const CurveEntry& entry : curves) {
            replaceTag(result, entry.index,
                       sampledCurveTag([&](double x) { return entry.curve.at(x); }));
        }
    }
    return result;
}

}  // namespace lumoxa_tool
