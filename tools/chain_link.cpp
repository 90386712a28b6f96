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
void requireChannels(const Profile& profile, uint32_t space, int wanted, uint32_t channels) {
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

// Tables of gray tones are Lab whatever the header says.
void requireLabTones(const Profile& profile, const ChainLink& link) {
    if (!isGrayLink(link) || profile.header().pcs == kLab) return;
    throw InputError(profile.name() + ": its gray tones lead to Lab, but its header says " +
                         spaceText(profile.header().pcs),
                     profile.remedy("make the profile anew with lumoxa make-gray"));
}

// @param xform  owned by the link from here on
ChainLink linkOf(const Profile& profile, uint32_t intent, icTransType direction, icXform_t xform,
                 int code) {
    ChainLink link;
    link.xform.reset(xform);
    if (code != icSuccess) {
        const Fault fault = transformFault(profile, intent, direction, code);
        throw InputError(profile.name() + ": " + fault.text, profile.remedy(fault.remedy));
    }
    icXformGetDesc(xform, &link.desc);
    requireLabTones(profile, link);
    link.profileName = profile.name();
    link.description = profile.description();
    link.tag = lutTagFor(profile, intent, direction);
    if (link.tag == 0) return link;
    link.grid = gridPoints(profile.tag(link.tag).value());
    link.notice = noticeOf(profile, link.tag);
    return link;
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
    icXform_t xform = nullptr;
    const int code =
        icXformGet(profile.handle(), static_cast<icRenderingIntent>(intent), direction, &xform);
    return linkOf(profile, intent, direction, xform, code);
}

ChainLink makeDeviceLink(const Profile& profile, uint32_t intent, icTransType direction) {
    refuseUnfitClass(profile);
    ChainLink link = makeLink(profile, intent, direction);
    requireChannels(profile, profile.space(), deviceChannels(profile, direction),
                    direction == icDeviceToPcs ? link.desc.inChannels : link.desc.outChannels);
    return link;
}

ChainLink makeTonedLink(const Profile& profile, uint32_t intent, const GrayTone& tone) {
    refuseUnfitClass(profile);
    icXform_t xform = nullptr;
    const int code =
        getTonedXform(profile.handle(), static_cast<icRenderingIntent>(intent), tone, &xform);
    return linkOf(profile, intent, icPcsToDevice, xform, code);
}

bool isGrayLink(const ChainLink& link) {
    return link.desc.kind == fourCc("KtoL") || link.desc.kind == fourCc("LtoK");
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
    requireChannels(profile, header.colorSpace, channelsOfSpace(header.colorSpace),
                    link.desc.inChannels);
    requireChannels(profile, header.pcs, channelsOfSpace(header.pcs), link.desc.outChannels);
    return link;
}

}  // namespace lumoxa_tool
