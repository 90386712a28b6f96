// SPDX-License-Identifier: Apache-2.0
#include "tools/transform_chain.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "tools/fault_finder.h"
#include "tools/interrupt.h"
#include "tools/lut_tag.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

struct Grid {
    int points;
    const char* interpolation;
};

// The library describes no grid, so the report repeats its rule: the finest grid of the chain,
// bounded by 2^23 samples. Four inputs are interpolated in pentahedra, whose tables take 120 times
// the room, where that costs less than half of the grid. Profiles of curves and matrix alone are
// linear between their curves: 3 points then do.
Grid gridOfConversion(const Conversion& conversion) {
    constexpr int kSampleBudget = 8388608;
    constexpr int kPentahedralRoom = 120;
    const icXformDesc_t& from = conversion.from.desc;
    const icXformDesc_t& to = conversion.to.desc;
    const auto root = [&](int budget) {
        return static_cast<int>(std::pow(budget, 1.0 / from.inChannels));
    };
    const int finest = std::max(conversion.from.grid, conversion.to.grid);
    const auto channels = static_cast<int>(
        std::max({from.inChannels, from.outChannels, to.inChannels, to.outChannels}));
    const int budget = kSampleBudget / std::max(channels, 1);
    int points = std::min(finest < 3 ? 3 : finest, root(budget));
    const char* interpolation = from.inChannels == 3 ? "tetrahedral" : "multilinear";
    if (from.inChannels == 4 && root(budget / kPentahedralRoom) > points / 2) {
        points = root(budget / kPentahedralRoom);
        interpolation = "pentahedral";
    }
    return {points | 1, interpolation};
}

// Combined, a chain in which no transform has a grid of its own gets one of 3 points, and whatever
// is not linear between its curves (a gamut that is cut off, the cube root of Lab) is spread over
// half the range. Two transforms one after the other keep it exact. Flare is the combination's
// business.
bool betterInSteps(const Conversion& conversion, const ConversionRequest& request) {
    constexpr int kFewestPoints = 3;  // of a grid that counts as one
    const auto meets = [](uint32_t space, uint32_t channels) {
        return isConnectionSpace(space) && channels == 3;
    };
    const icXformDesc_t& from = conversion.from.desc;
    const icXformDesc_t& to = conversion.to.desc;
    return std::max(conversion.from.grid, conversion.to.grid) < kFewestPoints &&
           meets(from.outSpace, from.outChannels) && meets(to.inSpace, to.inChannels) &&
           !request.displayFlare;
}

int stopWhenInterrupted(icIterState state, int, void*) {
    return state == icIterProgress && interrupted() ? 1 : 0;
}

void refuseUnfitClass(const Profile& profile) {
    struct Unfit {
        uint32_t deviceClass;
        const char* name;
    };
    static constexpr std::array kUnfit = {Unfit{fourCc("link"), "a device link"},
                                          Unfit{fourCc("nmcl"), "a named colour profile"}};
    for (const Unfit& unfit : kUnfit) {
        if (profile.header().deviceClass != unfit.deviceClass) continue;
        throw InputError(
            profile.name() + ": is " + unfit.name + ", which describes no single device",
            profile.remedy("give the profile of a device"));
    }
}

void addNotice(Conversion& conversion, const Profile& profile, const ChainLink& link) {
    if (link.tag == 0) return;
    const std::string stages = stagesLeftOut(profile.tag(link.tag).value());
    if (stages.empty()) return;
    std::string notice = "warning: " + profile.name() + ": the " + stages + " of tag " +
                         quotedSignature(link.tag) + " can't be applied, colours may be wrong";
    // An image's own profile goes before --from, so there is no other to use.
    if (profile.isFile()) notice += "; use a version 2 profile of the device if there is one";
    conversion.notices.push_back(notice);
}

}  // namespace

std::string ChainLink::describe() const {
    std::string text = tag != 0 ? signatureText(tag) + " " : std::string();
    text +=
        kindText(desc.kind) + ", " + spaceText(desc.inSpace) + " to " + spaceText(desc.outSpace);
    if (grid != 0) text += ", grid " + std::to_string(grid);
    return text;
}

std::string Conversion::describe() const {
    if (!combined) {
        const std::string given = spaceText(from.desc.outSpace);
        const std::string taken = spaceText(to.desc.inSpace);
        return "one after the other, " + (given == taken ? given : given + " to " + taken) +
               " between";
    }
    const Grid grid = gridOfConversion(*this);
    return kindText(desc.kind) + ", " + spaceText(desc.inSpace) + " to " +
           spaceText(desc.outSpace) + ", grid " + std::to_string(grid.points) + ", " +
           grid.interpolation;
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
    link.tag = lutTagFor(profile, intent, direction);
    if (link.tag != 0) link.grid = gridPoints(profile.tag(link.tag).value());
    return link;
}

ChainLink makeDeviceLink(const Profile& profile, uint32_t intent, icTransType direction) {
    refuseUnfitClass(profile);
    return makeLink(profile, intent, direction);
}

Conversion makeConversion(const Profile& from, const Profile& to,
                          const ConversionRequest& request) {
    Conversion conversion;
    conversion.from = makeDeviceLink(from, request.intent, icDeviceToPcs);
    conversion.to = makeDeviceLink(to, request.intent, icPcsToDevice);
    addNotice(conversion, from, conversion.from);
    addNotice(conversion, to, conversion.to);
    if (betterInSteps(conversion, request)) {
        conversion.desc = conversion.from.desc;
        conversion.desc.outSpace = conversion.to.desc.outSpace;
        conversion.desc.outChannels = conversion.to.desc.outChannels;
        conversion.between =
            PcsBridge(from, to, conversion.from.desc.outSpace, conversion.to.desc.inSpace,
                      request.intent == icAbsoluteColorimetric);
        return conversion;
    }

    const std::array<icXform_t, 2> chain = {conversion.from.xform.get(), conversion.to.xform.get()};
    icXform_t combined = nullptr;
    int failingLink = 0;
    const int options = request.displayFlare ? 0 : icCombineColorimetric;
    const int code = icCombineXforms(static_cast<int>(chain.size()), chain.data(), &combined,
                                     options, &failingLink, stopWhenInterrupted, nullptr, 0);
    conversion.combined.reset(combined);
    throwIfInterrupted();
    if (code == icErrXformKind) {
        throw InputError(from.name() + ": converts to " + spaceText(conversion.from.desc.outSpace) +
                             ", from which " + to.name() + " can't go on",
                         "choose other profiles");
    }
    if (code != icSuccess) {
        throw InputError(from.name() + ": combining it with " + to.name() + " " + faultText(code),
                         "choose other profiles");
    }
    icXformGetDesc(combined, &conversion.desc);
    return conversion;
}

}  // namespace lumoxa_tool
