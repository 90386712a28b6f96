// SPDX-License-Identifier: Apache-2.0
//
// From a profile, an intent and a direction to a transform. The seven public forms are one request
// with different tone parameters for the gray builders.
#include "base/entry_guard.h"
#include "gray/gray_builders.h"
#include "lumoxa/xform.h"
#include "lut/lut_tag.h"
#include "profile/profile_object.h"
#include "xform/media_white.h"
#include "xform/tag_choice.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

/// What the forms add for gray profiles.
struct GrayParameters {
    GrayRequest request;
    bool complete = true;  // no array that the form needs is missing
};

struct Request {
    const icProfileInternal& profile;
    icRenderingIntent intent;
    icTransType direction;
    const GrayParameters& gray;
};

/// The tone of a form with a split tone of `points` control points.
GrayParameters splitTone(const unsigned short* pair, int points, const float* controlPoints) {
    GrayParameters gray;
    gray.request.tone.pair = tonePair(pair);
    gray.complete = points >= 0 && (points == 0 || controlPoints != nullptr);
    if (gray.complete && points > 0) {
        gray.request.tone.controlPoints = {controlPoints, static_cast<size_t>(points) * 3};
    }
    return gray;
}

GrayParameters tone(const unsigned short* pair, float fade = 0.0f) {
    GrayParameters gray;
    gray.request.tone = {tonePair(pair), fade, {}};
    return gray;
}

/// Only a transform to the device needs the caller's tone curve.
GrayParameters withCurve(GrayParameters gray, icTransType direction, const float* curve) {
    gray.request.toneCurve = curve;
    gray.complete = gray.complete && (curve != nullptr || direction != icPcsToDevice);
    return gray;
}

GrayParameters withShaping(GrayParameters gray, int shaping, float parameter) {
    gray.request.shaped = shaping != 0;
    gray.request.shapingParameter = parameter;
    return gray;
}

int buildGrayXform(const Request& request, icXformInternal& xform) {
    if (!request.gray.complete) return icErrInvalid;
    GrayStatePtr state;
    const int code = buildGrayState(request.profile, request.direction, request.intent,
                                    request.gray.request, state);
    if (code != icSuccess) return code;
    xform.kind = request.direction == icDeviceToPcs ? kKindGrayToLab : kKindLabToGray;
    xform.inChannels = xform.outChannels = 3;
    xform.inTableEntries = state->inEntries;
    xform.outTableEntries = state->outEntries;
    xform.state = XformState(std::shared_ptr<const GrayConv_t>(std::move(state)));
    return icSuccess;
}

int readLutTag(const Request& request, icTagSignature signature, icXformInternal& xform) {
    TagCopy tag;
    if (const int code = readTag(request.profile, signature, tag)) return code;
    if (const int code = checkLutTag(tag.bytes.get(), tag.size)) return code;
    icSwapLut(tag.bytes.get());
    xform.kind = tag.type();
    xform.tagData = std::move(tag.bytes);
    return icSuccess;
}

int buildWithoutLut(const Request& request, icXformInternal& xform) {
    if (request.profile.header.colorSpace == kSpaceGray && hasTag(request.profile, kGrayTag)) {
        return buildGrayXform(request, xform);
    }
    auto* profile = const_cast<icProfileInternal*>(&request.profile);
    return request.direction == icDeviceToPcs
               ? icBuildTrcMatrixXform(profile, &xform, request.intent)
               : icBuildMatrixTrcXform(profile, &xform, request.intent);
}

/// Finds and builds the conversion. A gamut test without its tag, and a direction that does not
/// exist, leave the record without one.
int buildConversion(const Request& request, icXformInternal& xform) {
    icTagSignature tag = 0;
    if (request.direction == icDeviceToPcs || request.direction == icPcsToDevice) {
        tag = chooseLutTag(request.profile, request.intent, request.direction);
        if (tag == 0) return buildWithoutLut(request, xform);
    } else if (request.direction == icGamutTest && hasTag(request.profile, kGamutTag)) {
        tag = kGamutTag;
    }
    if (tag == 0) return icSuccess;
    if (const int code = readLutTag(request, tag, xform)) return code;
    attachLutState(xform);
    return icSuccess;
}

void describe(const Request& request, icXformInternal& xform) {
    const icHeader& header = request.profile.header;
    connectionSpaceWhite(request.profile, xform.pcsWhite);
    mediaWhite(request.profile, xform.mediaWhite);
    xform.intent = request.intent;
    xform.transType = request.direction;
    xform.deviceClass = header.deviceClass;
    const bool fromPcs = request.direction == icPcsToDevice || request.direction == icGamutTest;
    xform.inSpace = fromPcs ? header.pcs : header.colorSpace;
    xform.outSpace = request.direction == icPcsToDevice ? header.colorSpace
                     : request.direction == icGamutTest ? kSpaceGray
                                                        : header.pcs;
}

int requestXform(icProfile_t handle, icRenderingIntent intent, icTransType direction,
                 const GrayParameters& gray, icXform_t* out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    const icProfileInternal* profile = validProfile(handle);
    if (profile == nullptr) return icErrInvalid;
    return guarded([&] {
        const Request request{*profile, intent, direction, gray};
        XformPtr xform = newXform();
        describe(request, *xform);
        const int code = buildConversion(request, *xform);
        if (code == icSuccess) *out = xform.release();
        return code;
    });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

// Each form: the tone it names, then what it says about tonality.

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               icXform_t* out) {
    return requestXform(profile, intent, transType, splitTone(nullptr, 0, nullptr), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, icXform_t* out) {
    return requestXform(profile, intent, transType, tone(pair), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, const float* curve, icXform_t* out) {
    return requestXform(profile, intent, transType, withCurve(tone(pair), transType, curve), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, float parameter, const float* curve, icXform_t* out) {
    return requestXform(profile, intent, transType,
                        withCurve(tone(pair, parameter), transType, curve), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, float parameter, icXform_t* out, int shaping,
               float shapingParameter) {
    return requestXform(profile, intent, transType,
                        withShaping(tone(pair, parameter), shaping, shapingParameter), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, int points, const float* controlPoints,
               const float* curve, icXform_t* out) {
    return requestXform(profile, intent, transType,
                        withCurve(splitTone(pair, points, controlPoints), transType, curve), out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short* pair, int points, const float* controlPoints, icXform_t* out,
               int shaping, float shapingParameter) {
    return requestXform(
        profile, intent, transType,
        withShaping(splitTone(pair, points, controlPoints), shaping, shapingParameter), out);
}
