// SPDX-License-Identifier: Apache-2.0
#include "bench/peer.h"

#if defined(LUMOXA_HAVE_LCMS2)

#include <lcms2.h>

namespace lumoxa_bench {
namespace {

struct Close {
    void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using PeerProfile = std::unique_ptr<void, Close>;

PeerProfile open(const Bytes& image) {
    return PeerProfile(
        cmsOpenProfileFromMem(image.data(), static_cast<cmsUInt32Number>(image.size())));
}

PeerProfile connectionSpace(cmsColorSpaceSignature space) {
    return PeerProfile(space == cmsSigLabData ? cmsCreateLab2Profile(nullptr)
                                              : cmsCreateXYZProfile());
}

// Lab in 16 bits has the encoding of profile version 2 on both sides of the comparison.
cmsUInt32Number pixelFormat(cmsColorSpaceSignature space, int bits) {
    const auto bytes = static_cast<cmsUInt32Number>(bits / 8);
    const int pixelType =
        space == cmsSigLabData && bits == 16 ? PT_LabV2 : _cmsLCMScolorSpace(space);
    return FLOAT_SH(bits == 32 ? 1U : 0U) | COLORSPACE_SH(static_cast<cmsUInt32Number>(pixelType)) |
           CHANNELS_SH(cmsChannelsOf(space)) | BYTES_SH(bytes);
}

PeerConvert convertBetween(const PeerProfile& from, const PeerProfile& to, int inBits, int outBits,
                           cmsUInt32Number flags) {
    const std::shared_ptr<void> transform(
        cmsCreateTransform(from.get(), pixelFormat(cmsGetColorSpace(from.get()), inBits), to.get(),
                           pixelFormat(cmsGetColorSpace(to.get()), outBits),
                           INTENT_RELATIVE_COLORIMETRIC, flags),
        [](void* handle) {
            if (handle != nullptr) cmsDeleteTransform(handle);
        });
    if (transform == nullptr) return {};
    return [transform](const void* source, void* destination, uint32_t pixels) {
        cmsDoTransform(transform.get(), source, destination, pixels);
    };
}

}  // namespace

PeerConvert makePeer(const Conversion& conversion, int inBits, int outBits, PeerMode mode) {
    const Link& first = conversion.links.front();
    const Link& last = conversion.links.back();
    PeerProfile from = open(*first.profile);
    PeerProfile to = open(*last.profile);
    if (first.direction == icPcsToDevice) from = connectionSpace(cmsGetPCS(to.get()));
    if (last.direction == icDeviceToPcs) to = connectionSpace(cmsGetPCS(from.get()));
    return convertBetween(from, to, inBits, outBits,
                          mode == PeerMode::Unoptimized ? cmsFLAGS_NOOPTIMIZE : 0);
}

PeerConvert makeCompensatingPeer(const Bytes& from, const Bytes& to, int bits) {
    return convertBetween(open(from), open(to), bits, bits, cmsFLAGS_BLACKPOINTCOMPENSATION);
}

PeerConvert makePeerLabToXyz() {
    return convertBetween(connectionSpace(cmsSigLabData), connectionSpace(cmsSigXYZData), 16, 16,
                          0);
}

PeerConvert makePeerXyzToLab() {
    return convertBetween(connectionSpace(cmsSigXYZData), connectionSpace(cmsSigLabData), 16, 16,
                          0);
}

bool peerLoads(const Bytes& image) {
    return open(image) != nullptr;
}

}  // namespace lumoxa_bench

#else

namespace lumoxa_bench {

PeerConvert makePeer(const Conversion&, int, int, PeerMode) {
    return {};
}

PeerConvert makeCompensatingPeer(const Bytes&, const Bytes&, int) {
    return {};
}

PeerConvert makePeerLabToXyz() {
    return {};
}

PeerConvert makePeerXyzToLab() {
    return {};
}

bool peerLoads(const Bytes&) {
    return false;
}

}  // namespace lumoxa_bench

#endif
