// SPDX-License-Identifier: Apache-2.0
#include "tools/transform_chain.h"

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

// Where no transform has a grid of its own, two of them one after the other are exact, and a table
// isn't. Flare is the combination's business.
bool betterInSteps(const Conversion& conversion, const ConversionRequest& request) {
    const bool meet = meetInConnectionSpace(conversion.links.front(), conversion.links.back());
    return meet && withoutGrid(conversion.links) && !request.displayFlare && !request.combine;
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
    Conversion conversion;
    conversion.links.push_back(makeDeviceLink(from, request.intent, icDeviceToPcs));
    conversion.links.push_back(makeDeviceLink(to, request.intent, icPcsToDevice));
    if (!betterInSteps(conversion, request)) {
        conversion.table = combineChain(conversion.links, request);
        conversion.desc = conversion.table.desc;
        return conversion;
    }
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
