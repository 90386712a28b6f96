// SPDX-License-Identifier: Apache-2.0
#include "tools/gray_fit.h"

#include <cmath>
#include <new>

#include "tools/packed_pixels.h"
#include "tools/result_text.h"
#include "tools/tool_error.h"
#include "tools/xform_handle.h"

namespace lumoxa_tool {
namespace {

using Samples = std::vector<uint16_t>;

// The library's 16-bit Lab.
constexpr double kLStep = 652.8, kAbStep = 256, kAbZero = 32768;
constexpr size_t kChannels = 3;

// Converts the first sample of each pixel; those beside it are not read.
Samples converted(icProfile_t profile, icTransType direction, const std::vector<double>& values) {
    icXform_t made = nullptr;
    int code = icXformGet(profile, icRelativeColorimetric, direction, &made);
    const XformHandle xform(made);
    Samples from(values.size() * kChannels), to(from.size());
    for (size_t i = 0; i < values.size(); ++i)
        from[kChannels * i] = static_cast<uint16_t>(std::lround(values[i]));
    icXformDesc_t desc = {};
    if (code == icSuccess) code = icXformGetDesc(made, &desc);
    if (code == icSuccess)
        code = evaluatePacked(made, desc, {from.data(), icSamples16}, {to.data(), icSamples16},
                              values.size());
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess)
        throw InputError("fitting tones to the patches " + faultText(code), "check them");
    return to;
}

void addClip(NeutralFit& fit, double L, double step) {
    if (!fit.clips.empty() && L - fit.clips.back().light < 1.5 * step) {
        fit.clips.back().light = L;
    } else {
        fit.clips.push_back({L, L});
    }
}

}  // namespace

std::vector<Lab> tonesOfDevice(icProfile_t profile, const std::vector<double>& device) {
    const Samples samples = converted(profile, icDeviceToPcs, device);
    std::vector<Lab> tones;
    for (size_t i = 0; i < samples.size(); i += kChannels)
        tones.push_back({samples[i] / kLStep, (samples[i + 1] - kAbZero) / kAbStep,
                         (samples[i + 2] - kAbZero) / kAbStep});
    return tones;
}

NeutralFit neutralFit(icProfile_t profile) {
    constexpr int kTones = 401;
    const std::vector<Lab> ends = tonesOfDevice(profile, {0, 65535});
    NeutralFit fit;
    fit.paper = ends.front()[0];
    fit.black = ends.back()[0];
    const double step = (fit.paper - fit.black) / (kTones - 1);
    std::vector<double> wanted(kTones);
    for (size_t i = 0; i < wanted.size(); ++i)
        wanted[i] = kLStep * (fit.black + step * static_cast<double>(i));
    const Samples device = converted(profile, icPcsToDevice, wanted);
    std::vector<double> mains;
    for (size_t i = 0; i < device.size(); i += kChannels)
        mains.push_back(device[i]);
    const std::vector<Lab> achieved = tonesOfDevice(profile, mains);
    for (size_t i = 0; i < achieved.size(); ++i) {
        const double error = std::hypot(achieved[i][1], achieved[i][2]);
        const double L = wanted[i] / kLStep;
        fit.meanError += error / kTones;
        if (error > fit.largestError) {
            fit.largestError = error;
            fit.largestAt = L;
        }
        if (error > kVisibleTone) addClip(fit, L, step);
    }
    return fit;
}

}  // namespace lumoxa_tool
