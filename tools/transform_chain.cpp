// SPDX-License-Identifier: Apache-2.0
#include "tools/transform_chain.h"

#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

// Where no transform has a grid of its own, two of them one after the other are exact, and a table
// isn't. Flare is the combination's business.
bool betterInSteps(const Conversion& conversion, const ConversionRequest& request) {
    const ChainLink& first = conversion.links.front();
    const ChainLink& last = conversion.links.back();
    if (isGrayLink(first) || isGrayLink(last)) return true;
    return meetInConnectionSpace(first, last) && withoutGrid(conversion.links) &&
           !request.displayFlare && !request.combine;
}

// What only a chain with a gray device has, and what it hasn't.
void requireGrayOptions(const Profile& from, const Profile& to, const ConversionRequest& request) {
    const bool toGray = isGrayDevice(to, icPcsToDevice);
    if (request.tone.given() && !toGray) {
        throw UsageError("a tone is for gray devices of three channels, and " + to.name() +
                         " is for none; leave out --tone and the like");
    }
    if (!toGray && !isGrayDevice(from, icDeviceToPcs)) return;
    if (!request.combine && !request.displayFlare) return;
    throw UsageError(
        "a gray device's tones are converted in two steps; leave out --combine and "
        "--display-flare");
}

// A gray device reads Lab, of which the table of another profile may give something else.
void requireMeeting(const Conversion& conversion) {
    const ChainLink& first = conversion.links.front();
    const ChainLink& last = conversion.links.back();
    if (meetInConnectionSpace(first, last)) return;
    throw InputError(first.profileName + ": converts to " + spaceText(first.desc.outSpace) +
                         ", from which " + last.profileName + " can't go on",
                     "choose other profiles");
}

}  // namespace

std::string Conversion::describe() const {
    if (table.xform) return table.describe();
    const std::string given = spaceText(links.front().desc.outSpace);
    const std::string taken = spaceText(links.back().desc.inSpace);
    return "one after the other, " + (given == taken ? given : given + " to " + taken) + " between";
}

Conversion makeConversion(const Profile& from, const Profile& to,
                          const ConversionRequest& request) {
    requireGrayOptions(from, to, request);
    Conversion conversion;
    conversion.links.push_back(makeDeviceLink(from, request.intent, icDeviceToPcs));
    if (isGrayDevice(to, icPcsToDevice)) {
        conversion.links.push_back(
            makeTonedLink(to, request.intent, parseTone(request.tone, request.intent)));
    } else {
        conversion.links.push_back(makeDeviceLink(to, request.intent, icPcsToDevice));
    }
    if (!betterInSteps(conversion, request)) {
        conversion.table = combineChain(conversion.links, request);
        conversion.desc = conversion.table.desc;
        return conversion;
    }
    requireMeeting(conversion);
    const icXformDesc_t& first = conversion.links.front().desc;
    const icXformDesc_t& last = conversion.links.back().desc;
    conversion.desc = first;
    conversion.desc.outSpace = last.outSpace;
    conversion.desc.outChannels = last.outChannels;
    conversion.between =
        PcsBridge(from, to, first.outSpace, last.inSpace, request.intent == icAbsoluteColorimetric);
    return conversion;
}

Conversion makeLinkConversion(const Profile& link) {
    Conversion conversion;
    conversion.links.push_back(makeStoredLink(link));
    conversion.table = tableOfLink(conversion.links.front());
    conversion.desc = conversion.table.desc;
    return conversion;
}

}  // namespace lumoxa_tool
