// SPDX-License-Identifier: Apache-2.0
//
// From a profile, an intent and a direction to a transform. The seven public forms are one request
// with different tone parameters for the gray builders.
#include "lumoxa/xform.h"
#include "lut/lut_tag.h"
#include "profile/entry_guard.h"
#include "profile/profile_object.h"
#include "xform/media_white.h"
#include "xform/tag_choice.h"
#include "xform/xform_object.h"

namespace lumoxa {
namespace {

constexpr icTagSignature kGrayTag = fourcc("wzgd");

/// The part of a request that every form has.
struct Request {
    const icProfileInternal& profile;
    icRenderingIntent intent;
    icTransType direction;
};

/// Gray profiles with the private gray tag have no builder yet.
int buildGrayXform() {
    return icErrXformKind;
}

int readLutTag(const Request& request, icTagSignature signature, icXformInternal& xform) {
    TagCopy tag;
    if (const int code = readTag(request.profile, signature, tag)) return code;
    if (const int code = checkLutTag(tag.bytes.get(), tag.size)) return code;
    icSwapLut(tag.bytes.get());
    xform.kind = tag.type();
    xform.tagData = tag.bytes.release();
    return icSuccess;
}

int buildWithoutLut(const Request& request, icXformInternal& xform) {
    if (request.profile.header.colorSpace == kSpaceGray && hasTag(request.profile, kGrayTag)) {
        return buildGrayXform();
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
                 icXform_t* out) {
    if (out == nullptr) return icErrInvalid;
    *out = nullptr;
    const icProfileInternal* profile = validProfile(handle);
    if (profile == nullptr) return icErrInvalid;
    return guarded([&] {
        const Request request{*profile, intent, direction};
        XformPtr xform = newXform();
        describe(request, *xform);
        const int code = buildConversion(request, *xform);
        if (code == icSuccess) *out = xform.release();
        return code;
    });
}

}  // namespace
}  // namespace lumoxa

using lumoxa::requestXform;

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               icXform_t* out) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, icXform_t* out) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, const float*, icXform_t* out) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, float, const float*, icXform_t* out) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, float, icXform_t* out, int, float) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, int, const float*, const float*, icXform_t* out) {
    return requestXform(profile, intent, transType, out);
}

int icXformGet(icProfile_t profile, icRenderingIntent intent, icTransType transType,
               const unsigned short*, int, const float*, icXform_t* out, int, float) {
    return requestXform(profile, intent, transType, out);
}
