// SPDX-License-Identifier: Apache-2.0
#include "tools/chain_link.h"

#include <array>

#include "tools/fault_finder.h"
#include "tools/lut_tag.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

void refuseUnfitClass(const Profile& profile) {
    struct Unfit {
        uint32_t deviceClass;
        const char* name;
        const char* remedy;
    };
    static constexpr std::array kUnfit = {
        Unfit{kLinkClass, "a device link",
              "give the profile of a device, or name the link with --link"},
        Unfit{kNamedColorClass, "a named colour profile", "give the profile of a device"}};
    for (const Unfit& unfit : kUnfit) {
        if (profile.header().deviceClass != unfit.deviceClass) continue;
        throw InputError(
            profile.name() + ": is " + unfit.name + ", which describes no single device",
            profile.remedy(unfit.remedy));
    }
}

// Buffers are laid out by the colour space, kernels by the tag.
void requireChannels(const Profile& profile, uint32_t space, uint32_t channels) {
    const int wanted = channelsOfSpace(space);
    if (wanted == 0 || channels == static_cast<uint32_t>(wanted)) return;
    throw InputError(profile.name() + ": is for " + spaceText(space) + ", but its transform has " +
                         std::to_string(channels) + " channels",
                     profile.remedy("get a sound copy of the profile"));
}

std::string noticeOf(const Profile& profile, uint32_t tag) {
    const std::string stages = stagesLeftOut(profile.tag(tag).value());
    if (stages.empty()) return {};
    std::string notice = "warning: " + profile.name() + ": the " + stages + " of tag " +
                         quotedSignature(tag) + " can't be applied, colours may be wrong";
    // An image's own profile goes before --from, so there is no other to use.
    if (profile.isFile()) notice += "; use a version 2 profile of the device if there is one";
    return notice;
}

}  // namespace

std::string ChainLink::describe() const {
    std::string text = tag != 0 ? signatureText(tag) + " " : std::string();
    text +=
        kindText(desc.kind) + ", " + spaceText(desc.inSpace) + " to " + spaceText(desc.outSpace);
    if (grid != 0) text += ", grid " + std::to_string(grid);
    return text;
}

ChainLink makeLink(const Profile& profile, uint32_t intent, icTransType direction) {
    ChainLink link;
    icXform_t xform = nullptr;
    const int code =
        icXformGet(profile.handle(), static_cast<icRenderingIntent>(intent), direction, &xform);
    link.xform.reset(xform);
    if (code != icSuccess) {
        const Fault fault = transformFault(profile, intent, direction, code);
        throw InputError(profile.name() + ": " + fault.text, profile.remedy(fault.remedy));
    }
    icXformGetDesc(xform, &link.desc);
    link.profileName = profile.name();
    link.description = profile.description();
    link.tag = lutTagFor(profile, intent, direction);
    if (link.tag == 0) return link;
    link.grid = gridPoints(profile.tag(link.tag).value());
    link.notice = noticeOf(profile, link.tag);
    return link;
}

ChainLink makeDeviceLink(const Profile& profile, uint32_t intent, icTransType direction) {
    refuseUnfitClass(profile);
    ChainLink link = makeLink(profile, intent, direction);
    requireChannels(profile, profile.space(),
                    direction == icDeviceToPcs ? link.desc.inChannels : link.desc.outChannels);
    return link;
}

void requireStoredLink(const Profile& profile) {
    const icHeader& header = profile.header();
    if (header.deviceClass != kLinkClass) {
        throw InputError(profile.name() + ": is no device link",
                         profile.remedy("make one from profiles with lumoxa link"));
    }
    const bool leadsBetweenDevices =
        !isConnectionSpace(header.colorSpace) && !isConnectionSpace(header.pcs);
    if (!leadsBetweenDevices || lutTagFor(profile, header.renderingIntent, icDeviceToPcs) == 0) {
        throw InputError(profile.name() + ": stores no conversion from device to device",
                         profile.remedy("make another link from the profiles"));
    }
}

ChainLink makeStoredLink(const Profile& profile) {
    requireStoredLink(profile);
    const icHeader& header = profile.header();
    ChainLink link = makeLink(profile, header.renderingIntent, icDeviceToPcs);
    requireChannels(profile, header.colorSpace, link.desc.inChannels);
    requireChannels(profile, header.pcs, link.desc.outChannels);
    return link;
}

}  // namespace lumoxa_tool
