// SPDX-License-Identifier: Apache-2.0
#include "convert/print_stages.h"

#include <algorithm>
#include <utility>

#include "convert/builtin_spaces.h"
#include "convert/gamut.h"
#include "convert/ink_limit.h"

namespace lumoxa::engine {
namespace {

/// Whether a list that isn't empty begins with a stage of its own.
bool beginsElsewhere(const StageList& list, const Stage* stage) {
    return !list.empty() && list.stages().front().stage.get() != stage;
}

/// Whether the lists begin with the same curves, and those leave 0 where it is: no ink is no ink
/// behind them.
bool shareCurvesFromZero(const StageList& list, const PrintSides& sides) {
    if (list.empty()) return false;
    const Stage* const first = list.stages().front().stage.get();
    if (beginsElsewhere(sides.toGamutDevice, first) || beginsElsewhere(sides.toDestination, first))
        return false;
    const auto* curves = dynamic_cast<const CurveStage*>(first);
    return curves != nullptr &&
           std::all_of(curves->curves().begin(), curves->curves().end(),
                       [](const CurvePtr& curve) { return !(curve->at(0.0f) > 0.0f); });
}

/// L* of black ink alone through a list from CMYK to Lab, at equal steps.
std::vector<float> lightnessOfBlack(const StageList& toLab) {
    std::vector<float> lightness;
    Row rows[kMaxChannels];
    for (int done = 0; done < kBlackInkSteps; done += kBlockPixels) {
        const int n = std::min(kBlockPixels, kBlackInkSteps - done);
        for (int i = 0; i < n; ++i) {
            rows[0][i] = rows[1][i] = rows[2][i] = 0.0f;
            rows[3][i] = static_cast<float>(done + i) / (kBlackInkSteps - 1);
        }
        toLab.run(rows, n);
        lightness.insert(lightness.end(), rows[0], rows[0] + n);
    }
    return lightness;
}

StageList keptBlack(Chain& chain, const PrintSides& sides, const StageList& list) {
    if (chain.inSpace != kSpaceCmyk || chain.outSpace != kSpaceCmyk ||
        sides.destination == nullptr || sides.toDestination.empty()) {
        throw FaultError(icErrInvalid,
                         "black ink is kept from CMYK to CMYK between profiles of "
                         "devices, not from " +
                             spaceName(chain.inSpace) + " to " + spaceName(chain.outSpace));
    }
    Side back = sideOf(*sides.destination, chain.steps.back().intent, Direction::kToPcs);
    if (back.pcs == kSpaceXyz) back.stages.append(std::make_shared<XyzToLabStage>(), "");
    chain.print.blackInk = matchBlackInk(lightnessOfBlack(sides.toDestination),
                                         lightnessOfBlack(simplified(back.stages)));
    StageList kept;
    kept.append(makeBlackInk(list, *chain.print.blackInk), "preserved black");
    return kept;
}

/// The mark as a colour of the destination.
std::vector<float> markColour(const Chain& chain, const ChainRequest& request) {
    const auto srgb = std::make_shared<const std::vector<uint8_t>>(builtInSpace("sRGB"));
    ChainRequest plain;
    plain.intents = {icRelativeColorimetric};
    plain.options.blackPointCompensation = false;
    const Chain toDevice =
        makeChain({std::make_shared<ProfileView>(srgb, 0), chain.profiles.back()}, plain);
    std::vector<float> colour(static_cast<size_t>(toDevice.outputs));
    toDevice.stages.convert(request.options.gamutMark.data(), 3, colour.data(), toDevice.outputs);
    for (float& channel : colour) {
        if (!isConnectionSpace(chain.outSpace)) channel = clipped(channel, 1.0f);
    }
    return colour;
}

StageList markedGamut(Chain& chain, const ChainRequest& request, const PrintSides& sides,
                      const StageList& list, int inputs) {
    if (sides.gamutDevice == nullptr || sides.destination == nullptr) {
        throw FaultError(icErrInvalid,
                         "out-of-gamut colours can be marked where a profile describes the device; "
                         "this chain ends in a device link or a connection space");
    }
    for (const float channel : request.options.gamutMark) {
        if (!(channel >= 0 && channel <= 1))
            throw FaultError(icErrInvalid, "the mark of a gamut is three numbers of 0 to 1");
    }
    const auto test = std::make_shared<const GamutTest>(*sides.gamutDevice);
    chain.print.gamutByTag = test->byTag();
    chain.print.gamutLimit = test->limit();
    StageList marked;
    marked.append(
        makeGamutMark(list, sides.toGamutDevice, inputs, test, markColour(chain, request)),
        sides.gamutDevice->name());
    return marked;
}

/// Puts the list into stages that decide pixel by pixel. Curves at its start stay outside, where a
/// table can have them before its grid.
void wrapStages(Chain& chain, const ChainRequest& request, PrintSides& sides) {
    StageList outside, inside = chain.stages;
    sides.toGamutDevice = simplified(sides.toGamutDevice);
    sides.toDestination = simplified(sides.toDestination);
    if (shareCurvesFromZero(inside, sides)) {
        outside.stages().push_back(inside.stages().front());
        for (StageList* list : {&inside, &sides.toGamutDevice, &sides.toDestination}) {
            if (!list->empty()) list->stages().erase(list->stages().begin());
        }
    }
    if (request.options.preserveBlack) inside = keptBlack(chain, sides, inside);
    if (request.options.markOutOfGamut)
        inside = markedGamut(chain, request, sides, inside, chain.inputs);
    outside.append(inside);
    chain.stages = std::move(outside);
}

void limitInk(Chain& chain, float percent) {
    constexpr float kFullInk = 100;
    const uint32_t space = chain.outSpace;
    const bool inks = space == kSpaceCmyk || space == kSpaceCmy || chain.outputs > 4;
    if (!inks) {
        throw FaultError(
            icErrInvalid,
            "an ink limit is for devices with inks, this chain ends in " + spaceName(space));
    }
    const float most = kFullInk * static_cast<float>(chain.outputs);
    if (!(percent > 0 && percent <= most)) {
        throw FaultError(icErrInvalid, "an ink limit lies above 0 and up to " +
                                           std::to_string(static_cast<int>(most)) + " percent");
    }
    constexpr int kBlackOfCmyk = 3;
    chain.print.inkLimit = percent;
    chain.stages.append(
        makeInkLimit(chain.outputs, space == kSpaceCmyk ? kBlackOfCmyk : -1, percent), "ink limit");
}

}  // namespace

void addPrintStages(Chain& chain, const ChainRequest& request, PrintSides sides) {
    if (request.options.preserveBlack || request.options.markOutOfGamut)
        wrapStages(chain, request, sides);
    if (request.options.inkLimit != 0) limitInk(chain, request.options.inkLimit);
}

}  // namespace lumoxa::engine
