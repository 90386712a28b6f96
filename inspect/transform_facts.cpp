// SPDX-License-Identifier: Apache-2.0
#include "inspect/transform_facts.h"

#include <algorithm>
#include <initializer_list>

#include "convert/gray_print.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

using engine::Direction;
using engine::ProfileView;
using engine::Side;

constexpr uint32_t kClassLink = fourcc("link"), kClassAbstract = fourcc("abst"),
                   kClassNamed = fourcc("nmcl");

bool isAny(const ProfileView& profile, std::initializer_list<uint32_t> tags) {
    return std::any_of(tags.begin(), tags.end(), [&](uint32_t tag) { return profile.has(tag); });
}

bool offers(const ProfileView& profile, uint32_t intent, Direction direction) {
    // What LUT tags a named colour profile may carry describe no device.
    if (profile.header().deviceClass == kClassNamed) return false;
    const uint32_t space = profile.header().colorSpace;
    return lutTagOf(profile, intent, direction) != 0 || isGrayPrint(profile, direction) ||
           (space == kSpaceGray && profile.has(fourcc("kTRC"))) ||
           (channelsOf(space) == 3 && isAny(profile, {fourcc("rTRC"), fourcc("rXYZ")}));
}

Side makeSide(const ProfileView& profile, uint32_t intent, Direction direction) {
    if (profile.header().deviceClass == kClassNamed) {
        profile.fail(icErrInvalid, 0, header_at::kClass,
                     "is a named-colour profile, which lists colours and describes no device");
    }
    return isGrayPrint(profile, direction) ? grayPrintSide(profile, intent, direction, {})
                                           : sideOf(profile, intent, direction);
}

std::string kindOf(const ProfileView& profile, const Side& side, Direction direction) {
    if (side.tag != 0) return lutTypeText(profile.require(side.tag).type());
    if (isGrayPrint(profile, direction)) return "gray print tables";
    if (profile.header().colorSpace == kSpaceGray) return "gray curve";
    return direction == Direction::kToPcs ? "curves and matrix" : "matrix and curves";
}

void setChannels(TransformFact& fact) {
    const auto& stages = fact.side.stages.stages();
    fact.inputs = stages.empty() ? channelsOf(fact.from) : stages.front().stage->inputs();
    fact.outputs = stages.empty() ? channelsOf(fact.to) : stages.back().stage->outputs();
}

// A link and an abstract profile hold one conversion, whatever the intent.
TransformFact wholeFact(const Subject& subject) {
    const ProfileView& profile = *subject.view();
    TransformFact fact;
    fact.direction = profile.header().deviceClass == kClassLink ? "link" : "abstract";
    fact.intent = "all intents";
    fact.side.tag = lutTagOf(profile, icPerceptual, Direction::kToPcs);
    fact.offered = fact.side.tag != 0;
    fact.fault = subject.faultIn([&] { fact.side.stages = wholeStages(profile); });
    fact.from = profile.header().colorSpace;
    fact.to = profile.header().pcs;
    if (!fact.fault) {
        fact.kind = kindOf(profile, fact.side, Direction::kToPcs);
        setChannels(fact);
    }
    return fact;
}

TransformFact deviceFact(const Subject& subject, Direction direction, uint32_t intent) {
    const ProfileView& profile = *subject.view();
    const bool toPcs = direction == Direction::kToPcs;
    TransformFact fact;
    fact.direction = toPcs ? "from device" : "to device";
    fact.intent = intentText(intent);
    fact.offered = offers(profile, intent, direction);
    fact.fault = subject.faultIn([&] {
        fact.side = makeSide(profile, intent, direction);
        fact.kind = kindOf(profile, fact.side, direction);
    });
    if (fact.fault) return fact;
    const uint32_t device = profile.header().colorSpace;
    fact.from = toPcs ? device : fact.side.pcs;
    fact.to = toPcs ? fact.side.pcs : device;
    setChannels(fact);
    return fact;
}

}  // namespace

std::vector<TransformFact> transformFacts(const Subject& subject) {
    if (subject.view() == nullptr) return {};
    const uint32_t deviceClass = subject.view()->header().deviceClass;
    if (deviceClass == kClassLink || deviceClass == kClassAbstract) return {wholeFact(subject)};
    std::vector<TransformFact> facts;
    for (const Direction direction : {Direction::kToPcs, Direction::kToDevice}) {
        for (uint32_t intent = icPerceptual; intent <= icAbsoluteColorimetric; ++intent)
            facts.push_back(deviceFact(subject, direction, intent));
    }
    return facts;
}

}  // namespace lumoxa::inspection
