// SPDX-License-Identifier: Apache-2.0
#include "xform/tone_curve.h"

#include <cmath>

#include "base/pcs_encoding.h"
#include "base/power.h"
#include "base/root_finder.h"
#include "lut/lut_tag.h"
#include "lut/table_lookup.h"

namespace lumoxa {
namespace {

using namespace lut_layout;

int decodeSampled(const TagCopy& tag, SampledCurve& out) {
    if (tag.size < kCurveData) return icErrRead;
    const uint32_t count = loadFileOrder<uint32_t>(tag.data() + kCurveCount);
    if (count > (tag.size - kCurveData) / 2) return icErrRead;
    out.entries.resize(count);
    for (uint32_t i = 0; i < count; ++i) {
        out.entries[i] = loadFileOrder<uint16_t>(tag.data() + kCurveData + size_t{2} * i);
    }
    return icSuccess;
}

int decodeParametric(const TagCopy& tag, SampledCurve& out) {
    if (tag.size < kCurveData) return icErrRead;
    const TagView view{tag.data(), true};
    const uint32_t count = parametricCount(view.u16(kParaType));
    if (count == 0) return icErrTagType;
    if (count > (tag.size - kCurveData) / 4) return icErrRead;
    out.parametric = true;
    out.function = ParametricCurve(view);
    return icSuccess;
}

void copyExtended(const std::vector<uint16_t>& source, int entries, float* table) {
    for (size_t i = 0; i < static_cast<size_t>(entries); ++i) {
        table[i] = i < source.size() ? source[i] : source.back();
    }
}

constexpr float kMachineEpsilon = 3e-8f;   // half of single precision's, as the method asks
constexpr float kHalfTolerance = 0.0005f;  // half of 0.001 table positions
constexpr float kHit = 1e-6f;              // of a value at either end: counts as the value itself

float toleranceAt(float x) {
    return 2.0f * kMachineEpsilon * std::fabs(x) + kHalfTolerance;
}

/// Finds the position x in 0 .. entries - 1 where the curve has the value y; leaves x as it is when
/// the search does not converge.
void findOnCurve(const float* table, int entries, float y, float& x) {
    const auto difference = [&](float at) { return lookUp(table, entries - 2, at) - y; };
    const auto end = [&](float at) {
        const float value = difference(at);
        return RootSample{at, std::fabs(value) < kHit ? 0.0f : value};
    };
    const float last = static_cast<float>(entries - 1);
    findRoot(difference, end(0.0f), end(last), toleranceAt, x);
}

}  // namespace

void sampleGamma(double gamma, int entries, float* table) {
    for (int i = 0; i < entries; ++i) {
        table[i] = static_cast<float>(65535.0 * power(double(i) / (entries - 1), gamma));
    }
}

int readToneCurve(const icProfileInternal& profile, icTagSignature signature, SampledCurve& out) {
    TagCopy tag;
    if (const int code = readTag(profile, signature, tag)) return code;
    switch (tag.type()) {
        case kTypeCurve:
            return decodeSampled(tag, out);
        case kTypeParametric:
            return decodeParametric(tag, out);
        default:
            return icErrTagType;
    }
}

int readXyz(const icProfileInternal& profile, icTagSignature signature,
            std::array<int32_t, 3>& out) {
    TagCopy tag;
    if (const int code = readTag(profile, signature, tag, kXyzTagSize)) return code;
    for (size_t i = 0; i < out.size(); ++i) {
        out[i] = static_cast<int32_t>(loadFileOrder<uint32_t>(tag.data() + 8 + 4 * i));
    }
    return icSuccess;
}

void sampleParametric(const ParametricCurve& curve, int entries, float* table) {
    const float powerScale = curve.type() == 4 ? 1.0f : kSampleMax16;
    for (int i = 0; i < entries; ++i) {
        const float x = static_cast<float>(i) / static_cast<float>(entries - 1);
        const float y = curve.inPowerSegment(x)
                            ? curve.powerTerm(x) * powerScale + curve.powerOffset()
                            : curve.linear(x);
        table[i] = curve.type() == 0 ? y : clipped(y, kSampleMax16);
    }
}

void sampleToneCurve(const SampledCurve& curve, int entries, float* table) {
    if (curve.parametric) {
        sampleParametric(curve.function, entries, table);
    } else if (curve.entries.empty()) {
        for (int i = 0; i < entries; ++i) {
            table[i] = static_cast<float>(i) * kSampleMax16 / static_cast<float>(entries - 1);
        }
    } else if (curve.entries.size() == 1) {
        sampleGamma(curve.entries[0] * kGammaStep, entries, table);
    } else {
        copyExtended(curve.entries, entries, table);
    }
}

void invertCurve(const float* table, int entries, float* inverse) {
    float x = 0.0f;
    const auto last = static_cast<float>(entries - 1);
    for (int i = 0; i < entries; ++i) {
        findOnCurve(table, entries, static_cast<float>(i) * kSampleMax16 / last, x);
        inverse[i] = x * kSampleMax16 / last;
    }
}

}  // namespace lumoxa
