// SPDX-License-Identifier: Apache-2.0
#include "profile/header_reader.h"

#include "base/byte_order.h"
#include "lumoxa/profile.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

template <class... Fields>
void convert(Fields&... fields) {
    ((fields = fromFileOrder(fields)), ...);
}

void convertSigned(int32_t& field) {
    field = static_cast<int32_t>(fromFileOrder(static_cast<uint32_t>(field)));
}

}  // namespace

void swapHeader(icHeader& h) {
    convert(h.size, h.cmmId, h.version, h.deviceClass, h.colorSpace, h.pcs);
    convert(h.date.year, h.date.month, h.date.day, h.date.hours, h.date.minutes, h.date.seconds);
    convert(h.magic, h.platform, h.flags, h.manufacturer, h.model, h.attributes, h.renderingIntent);
    convertSigned(h.illuminant.X);
    convertSigned(h.illuminant.Y);
    convertSigned(h.illuminant.Z);
}

icHeader headerOf(const void* image) {
    icHeader header = loadRaw<icHeader>(image);
    swapHeader(header);
    return header;
}

int readProfileHeader(FILE* stream, icHeader& out) {
    const int code = icReadHeader(stream, &out);
    if (code != icSuccess) return code;
    return out.magic == kMagic ? icSuccess : icErrInvalid;
}

}  // namespace lumoxa

using namespace lumoxa;

int icReadHeader(const void* image, icHeader* out) {
    if (image == nullptr) return icErrNullData;
    if (out == nullptr) return icErrInvalid;
    *out = headerOf(image);
    return icSuccess;
}

int icReadHeader(FILE* stream, icHeader* out) {
    if (stream == nullptr || out == nullptr) return icErrInvalid;
    icHeader header;
    if (std::fread(&header, sizeof header, 1, stream) != 1) return icErrRead;
    swapHeader(header);
    *out = header;
    return icSuccess;
}
