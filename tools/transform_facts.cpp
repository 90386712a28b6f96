// SPDX-License-Identifier: Apache-2.0
#include "tools/chain_link.h"
#include "tools/fault_finder.h"
#include "tools/lut_tag.h"
#include "tools/profile_facts.h"
#include "tools/profile_source.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

bool offers(const Profile& profile, uint32_t intent, icTransType direction) {
    // What LUT tags a named colour profile may carry describe no device.
    if (profile.header().deviceClass == fourCc("nmcl")) return false;
    return lutTagFor(profile, intent, direction) != 0 || profile.hasTag(fourCc("rTRC")) ||
           profile.hasTag(fourCc("kTRC")) || isGrayDevice(profile, direction);
}

std::string transformText(const Profile& profile, const ChainLink& link,
                          const std::string& leftOut) {
    std::string text = link.describe() + ", " + std::to_string(link.desc.inChannels) + " to " +
                       std::to_string(link.desc.outChannels) + " channels";
    if (link.tag == 0) return text;
    const Tag tag = profile.tag(link.tag).value();
    if (tag.type == kLut16) {
        text += ", tables " + std::to_string(bigEndian16(&tag.bytes[48])) + " and " +
                std::to_string(bigEndian16(&tag.bytes[50]));
    }
    return leftOut.empty() ? text : text + ", without its " + leftOut;
}

void makeTransform(const Profile& profile, uint32_t intent, icTransType direction,
                   TransformFact& fact) {
    try {
        const ChainLink link = makeLink(profile, intent, direction);
        fact.tag = link.tag;
        fact.desc = link.desc;
        fact.grid = link.grid;
        if (link.tag != 0) fact.leftOut = stagesLeftOut(profile.tag(link.tag).value());
        fact.text = transformText(profile, link, fact.leftOut);
    } catch (const InputError& error) {
        fact.fault = error.what();
    }
}

void add(const TransformFact& fact, ProfileFacts& facts) {
    if (facts.fault.empty()) facts.fault = fact.fault;
    facts.transforms.push_back(fact);
}

// A link stores one conversion, made for one intent, whatever is asked for.
void addLink(const Profile& profile, ProfileFacts& facts) {
    TransformFact fact;
    fact.direction = "link";
    fact.intent = "all intents";
    fact.offered = profile.hasTag(fourCc("A2B0"));
    if (fact.offered) makeTransform(profile, icPerceptual, icDeviceToPcs, fact);
    add(fact, facts);
}

void addDevice(const Profile& profile, ProfileFacts& facts) {
    for (const icTransType direction : {icDeviceToPcs, icPcsToDevice}) {
        for (uint32_t intent = icPerceptual; intent <= icAbsoluteColorimetric; ++intent) {
            TransformFact fact;
            fact.direction = direction == icDeviceToPcs ? "from device" : "to device";
            fact.intent = intentText(intent);
            fact.offered = offers(profile, intent, direction);
            if (fact.offered) makeTransform(profile, intent, direction, fact);
            add(fact, facts);
        }
    }
    facts.gamutTest = profile.hasTag(fourCc("gamt"));
}

}  // namespace

void gatherTransforms(const std::string& name, const std::vector<uint8_t>& bytes,
                      ProfileFacts& facts) {
    try {
        const Profile profile(name, bytes);
        profile.header().deviceClass == fourCc("link") ? addLink(profile, facts)
                                                       : addDevice(profile, facts);
    } catch (const InputError& error) {
        facts.fault = error.what();
    }
}

}  // namespace lumoxa_tool
