// SPDX-License-Identifier: Apache-2.0
#include "tools/xform_handle.h"

#include <new>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

constexpr uint32_t kVersion = 0x02400000;  // 2.4, the last that has lut16 tags for every class

// The tags are made here and sound: what can fail is memory.
void require(int code) {
    if (code != icSuccess) throw std::bad_alloc();
}

}  // namespace

ProfileHandle newProfile(uint32_t deviceClass, uint32_t inSpace, uint32_t outSpace,
                         icRenderingIntent intent) {
    icProfile_t created = nullptr;
    require(icProfileCreate(nullptr, &created));
    ProfileHandle profile(created);
    icHeader header = {};
    require(icProfileGetHeader(created, &header));
    header.version = kVersion;
    header.deviceClass = deviceClass;
    header.colorSpace = inSpace;
    header.pcs = outSpace;
    header.renderingIntent = intent;
    require(icProfileSetHeader(created, &header));
    return profile;
}

void addTag(const ProfileHandle& profile, uint32_t signature, const std::vector<uint8_t>& bytes) {
    require(icTagAdd(profile.get(), signature, static_cast<unsigned>(bytes.size()), bytes.data()));
}

XformHandle xformOfTag(uint32_t deviceClass, uint32_t inSpace, uint32_t outSpace,
                       icRenderingIntent intent, const std::vector<uint8_t>& tag) {
    const ProfileHandle profile = newProfile(deviceClass, inSpace, outSpace, intent);
    addTag(profile, fourCc("A2B0"), tag);
    icXform_t xform = nullptr;
    require(icXformGet(profile.get(), intent, icDeviceToPcs, &xform));
    return XformHandle(xform);
}

}  // namespace lumoxa_tool
