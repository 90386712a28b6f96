// SPDX-License-Identifier: Apache-2.0
#include "make/gray_fit.h"

#include <cmath>
#include <memory>
#include <new>

#include "base/fault.h"
#include "base/json.h"
#include "convert/gray_print.h"
#include "gray/gray_state.h"
#include "lumoxa/lumoxa.h"
#include "make/gray_patches.h"

namespace lumoxa::engine {
namespace {

using Samples = std::vector<uint16_t>;

// 16-bit Lab of ICC version 2.
constexpr double kLStep = 652.8, kAbStep = 256, kAbZero = 32768;
constexpr size_t kChannels = kGrayPrintChannels;

struct XformFree {
    void operator()(icXform_t xform) const noexcept { icXformFree(xform); }
};
using XformHandle = std::unique_ptr<const icXformInternal, XformFree>;

void require(int code) {
    if (code == icSuccess) return;
    if (code == icErrNoMemory) throw std::bad_alloc();
    Fault fault;
    fault.code = code;
    fault.tag = kGrayTag;
    fault.sentence = "no tones can be fitted to the patches";
    throw FaultError(fault);
}

icPixelLayout_t packed(Samples& samples) {
    constexpr size_t kPixelBytes = kChannels * sizeof(uint16_t);
    icPixelLayout_t layout = {};
    layout.dataType = icSamples16;
    layout.contiguous = 1;
    layout.pixelCount = static_cast<int32_t>(samples.size() / kChannels);
    layout.lineCount = 1;
    layout.pixelStep = kPixelBytes;
    layout.lineStep = static_cast<int32_t>(samples.size() * sizeof(uint16_t));
    layout.channelCount = kChannels;
    layout.channelData[0] = samples.data();
    return layout;
}

// Converts the first sample of each pixel; those beside it are not read.
Samples converted(icProfile_t profile, icTransType direction, const std::vector<double>& values) {
    icXform_t made = nullptr;
    const int code = icXformGet(profile, icRelativeColorimetric, direction, &made);
    const XformHandle xform(made);
    require(code);
    icXformDesc_t desc = {};
    require(icXformGetDesc(made, &desc));
    if (desc.inChannels != kChannels || desc.outChannels != kChannels) require(icErrXformKind);
    Samples from(values.size() * kChannels), to(from.size());
    for (size_t i = 0; i < values.size(); ++i)
        from[kChannels * i] = static_cast<uint16_t>(std::floor(values[i] + 0.5));
    const icPixelLayout_t source = packed(from), destination = packed(to);
    require(icEvaluate(made, &source, &destination, nullptr, nullptr));
    return to;
}

void addClip(NeutralFit& fit, double L, double step) {
    if (!fit.clips.empty() && L - fit.clips.back().light < 1.5 * step) {
        fit.clips.back().light = L;
    } else {
        fit.clips.push_back({L, L});
    }
}

void addPatches(JsonObject& report, const TagReader& tag) {
    constexpr uint64_t kPoints = 8, kSteps = 10, kLayout = 11;
    const bool ramp = tag.u8(kLayout) == kGrayRamp;
    report.add("layout", ramp ? "ramp" : "grids");
    report.add("points", tag.u16(kPoints));
    report.add("steps", ramp ? kBestGraySteps : tag.u8(kSteps));
    report.add("best_steps", kBestGraySteps);
}

void addFit(JsonObject& report, const NeutralFit& fit) {
    report.add("black", fit.black);
    report.add("paper", fit.paper);
    report.object("tone_error", [&](JsonObject& error) {
        error.add("mean", fit.meanError);
        error.add("largest", fit.largestError);
        error.add("largest_at", fit.largestAt);
        error.add("visible", kVisibleTone);
    });
    report.array("off_neutral", [&](JsonArray& ranges) {
        for (const NeutralFit::Range& clip : fit.clips) {
            ranges.object([&](JsonObject& range) {
                range.add("dark", clip.dark);
                range.add("light", clip.light);
            });
        }
    });
}

}  // namespace

std::vector<LabTone> tonesOfDevice(icProfile_t profile, const std::vector<double>& device) {
    const Samples samples = converted(profile, icDeviceToPcs, device);
    std::vector<LabTone> tones;
    for (size_t i = 0; i < samples.size(); i += kChannels)
        tones.push_back({samples[i] / kLStep, (samples[i + 1] - kAbZero) / kAbStep,
                         (samples[i + 2] - kAbZero) / kAbStep});
    return tones;
}

NeutralFit neutralFit(icProfile_t profile) {
    constexpr int kTones = 401;
    const std::vector<LabTone> ends = tonesOfDevice(profile, {0, 65535});
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
    const std::vector<LabTone> achieved = tonesOfDevice(profile, mains);
    for (size_t i = 0; i < achieved.size(); ++i) {
        const double a = achieved[i][1], b = achieved[i][2];
        const double error = std::sqrt(a * a + b * b);
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

std::string grayPrintReport(const ProfileImage& image) {
    constexpr int kNoChain = -1;
    const ProfileView view(image, kNoChain);
    const TagReader tag = view.require(kGrayTag);
    const bool serves = isGrayPrint(view, Direction::kToPcs) &&
                        isGrayPrint(view, Direction::kToDevice) && view.header().pcs == kSpaceLab;
    if (!serves) {
        view.fail(icErrXformKind, kGrayTag, -1,
                  "is no gray print profile: those are gray, lead to Lab and have no LUT tags");
    }
    icProfile_t handle = nullptr;
    const int code = icProfileLoadFromBuffer(nullptr, image->data(), image->size(), &handle);
    const ProfilePtr owner(const_cast<icProfileInternal*>(handle));
    require(code);
    const NeutralFit fit = neutralFit(handle);
    return jsonObject([&](JsonObject& report) {
        addPatches(report, tag);
        addFit(report, fit);
    });
}

}  // namespace lumoxa::engine
