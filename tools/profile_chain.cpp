// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_chain.h"

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

bool isLinkProfile(const Profile& profile) {
    return profile.header().deviceClass == kLinkClass;
}

// The chain as far as it has been built, and where colour stands at its end.
class ChainBuilder {
  public:
    explicit ChainBuilder(icRenderingIntent intent) : intent_(intent) {}

    /// @param next  the profile behind, null for the last one
    void append(const Profile& profile, const Profile* next) {
        const uint32_t deviceClass = profile.header().deviceClass;
        if (deviceClass == kLinkClass) {
            appendStoredLink(profile);
        } else if (deviceClass == kAbstractClass) {
            appendAbstract(profile);
        } else {
            appendDevice(profile, next);
        }
    }

    std::vector<ChainLink> finish(const Profile& last) {
        if (place_ != Place::kDevice) {
            throw InputError(last.name() + ": ends the chain in a connection space",
                             "name the profile of the target device behind it");
        }
        return std::move(chain_);
    }

  private:
    enum class Place { kNowhere, kDevice, kConnectionSpace };

    void appendStoredLink(const Profile& profile) {
        if (place_ == Place::kConnectionSpace) {
            throw InputError(
                profile.name() + ": is a device link, which takes the colours of a device, and " +
                    chain_.back().profileName + " before it gives those of a connection space",
                "leave that one out, or name a profile of the link's source between them");
        }
        requireSameDevice(profile);
        push(makeStoredLink(profile), Place::kDevice);
    }

    void appendAbstract(const Profile& profile) {
        if (place_ != Place::kConnectionSpace) {
            throw InputError(profile.name() +
                                 ": is an abstract profile, which changes colours that a device "
                                 "profile has brought into the connection space",
                             "let a device profile stand before it");
        }
        push(makeLink(profile, intent_, icDeviceToPcs), Place::kConnectionSpace);
    }

    void appendDevice(const Profile& profile, const Profile* next) {
        if (place_ != Place::kConnectionSpace) {
            requireSameDevice(profile);
            push(makeDeviceLink(profile, intent_, icDeviceToPcs), Place::kConnectionSpace);
            return;
        }
        push(makeDeviceLink(profile, intent_, icPcsToDevice), Place::kDevice);
        if (next != nullptr && !isLinkProfile(*next)) {
            push(makeDeviceLink(profile, intent_, icDeviceToPcs), Place::kConnectionSpace);
        }
    }

    // Whether the profile may take the pixels that the chain has come to, if it has come to any.
    void requireSameDevice(const Profile& profile) const {
        if (place_ != Place::kDevice || chain_.back().desc.outSpace == profile.space()) return;
        const ChainLink& before = chain_.back();
        throw InputError(profile.name() + ": is for " + spaceText(profile.space()) + ", but " +
                             before.profileName + " before it gives " +
                             spaceText(before.desc.outSpace),
                         "choose profiles that fit");
    }

    void push(ChainLink link, Place place) {
        chain_.push_back(std::move(link));
        place_ = place;
    }

    icRenderingIntent intent_;
    std::vector<ChainLink> chain_;
    Place place_ = Place::kNowhere;
};

// Applications don't expect a link from or to Lab, whose coding its class doesn't fix.
void requireDevice(const Profile& profile, uint32_t space) {
    if (!isConnectionSpace(space)) return;
    throw InputError(profile.name() + ": is for " + spaceText(space) +
                         ", and a device link leads from device to device",
                     profile.remedy("give the profile of a device"));
}

}  // namespace

std::vector<ChainLink> chainOfProfiles(const std::vector<Profile>& profiles,
                                       icRenderingIntent intent) {
    ChainBuilder builder(intent);
    for (size_t i = 0; i < profiles.size(); ++i) {
        builder.append(profiles[i], i + 1 < profiles.size() ? &profiles[i + 1] : nullptr);
    }
    std::vector<ChainLink> chain = builder.finish(profiles.back());
    requireDevice(profiles.front(), chain.front().desc.inSpace);
    requireDevice(profiles.back(), chain.back().desc.outSpace);
    return chain;
}

}  // namespace lumoxa_tool
