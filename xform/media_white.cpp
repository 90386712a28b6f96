// SPDX-License-Identifier: Apache-2.0
#include "xform/media_white.h"

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "base/pcs_encoding.h"
#include "lumoxa/profile.h"
#include "lumoxa/xform.h"
#include "xform/tone_curve.h"

namespace lumoxa {
namespace {

constexpr icTagSignature kWhitePointTag = fourcc("wtpt");

/// Finds the tag and reads it through `source`: an open file or memory.
template <class Source>
int readWhitePoint(Source source, icTagList_safe64bit* list, unsigned short* white) {
    if (list == nullptr || white == nullptr) return icErrInvalid;
    icTag_safe64bit* entry = nullptr;
    if (const int code = icGetTagPtr(list, kWhitePointTag, &entry)) return code;
    if (entry->size < kXyzTagSize) return icErrRead;
    icTagBase* bytes = nullptr;
    const int code = icReadTag(source, entry, &bytes);
    const CHeapPtr<icTagBase> tag(bytes);
    if (code != icSuccess) return code;
    const auto* numbers = reinterpret_cast<const uint8_t*>(tag.get()) + sizeof(icTagBase);
    for (int i = 0; i < 3; ++i) {
        white[i] = xyz16FromFixed(static_cast<int32_t>(loadFileOrder<uint32_t>(numbers + 4 * i)));
    }
    return icSuccess;
}

}  // namespace

void connectionSpaceWhite(const icProfileInternal& profile, uint16_t (&white)[3]) {
    const icXYZNumber& xyz = profile.header.illuminant;
    white[0] = xyz16FromFixed(xyz.X);
    white[1] = xyz16FromFixed(xyz.Y);
    white[2] = xyz16FromFixed(xyz.Z);
}

void mediaWhite(const icProfileInternal& profile, uint16_t (&white)[3]) {
    const int code =
        profile.tagStorage == kTagsInFile
            ? icGetMediaWhitepoint(profile.stream, profile.tagList, white)
            : icGetMediaWhitepoint(static_cast<const void*>(nullptr), profile.tagList, white);
    if (code != icSuccess) connectionSpaceWhite(profile, white);
}

}  // namespace lumoxa

using namespace lumoxa;

int icGetMediaWhitepoint(FILE* stream, icTagList_safe64bit* list, unsigned short white[3]) {
    if (stream == nullptr) return icErrInvalid;
    return guarded([&] { return readWhitePoint(stream, list, white); });
}

int icGetMediaWhitepoint(const void* image, icTagList_safe64bit* list, unsigned short white[3]) {
    return guarded([&] { return readWhitePoint(image, list, white); });
}
