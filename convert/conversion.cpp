// SPDX-License-Identifier: Apache-2.0
#include "convert/conversion.h"

#include <algorithm>
#include <cmath>

#include "convert/shaper_plan.h"
#include "convert/stages_plan.h"
#include "convert/tag_stages.h"

namespace lumoxa::engine {
namespace {

Chain chainOf(const ConversionRequest& request) {
    const size_t steps = request.profiles.size() - 1;
    ChainRequest chain;
    chain.intents = request.intents;
    if (chain.intents.size() == 1)
        chain.intents.assign(std::max<size_t>(steps, 1), chain.intents[0]);
    if (chain.intents.size() != std::max<size_t>(steps, 1)) {
        throw FaultError(icErrInvalid, "there are " + std::to_string(chain.intents.size()) +
                                           " intents for a chain of " + std::to_string(steps) +
                                           " steps");
    }
    chain.options = request.options;
    std::vector<std::shared_ptr<const ProfileView>> profiles = profilesOf(request);
    if (request.proof) {
        chain.intents.push_back(request.proofIntent);
        chain.gamutDevice = static_cast<int>(profiles.size()) - 2;
    }
    return makeChain(std::move(profiles), chain);
}

/// The chain's stages with decoding before and encoding behind.
StageList betweenSamples(const Chain& chain) {
    StageList list;
    if (isConnectionSpace(chain.inSpace)) {
        list.append(std::make_shared<AffineStage>(decoding(chain.inSpace, false), "decoding"),
                    "samples");
    }
    list.append(chain.stages);
    if (isConnectionSpace(chain.outSpace)) {
        Affine encoding;
        decoding(chain.outSpace, false).invert(encoding);
        list.append(std::make_shared<AffineStage>(encoding, "encoding"), "samples");
    }
    return simplified(list);
}

/// Largest difference between two plans in steps of 8 bits, over random colours and grays.
double largestStep(const Plan& plan, const Plan& exact, uint32_t space) {
    constexpr int kColours = 512;
    std::vector<uint16_t> samples = randomSamples(plan.inputs(), kColours, 1);
    const std::vector<uint16_t> dark = shadowSamples(space, plan.inputs(), kColours, 2);
    samples.insert(samples.end(), dark.begin(), dark.end());
    const ptrdiff_t count = 2 * kColours;
    std::vector<uint16_t> ours(static_cast<size_t>(count * plan.outputs())), theirs(ours.size());
    plan.convert(SampleType::kU16, samples.data(), SampleType::kU16, ours.data(), count);
    exact.convert(SampleType::kU16, samples.data(), SampleType::kU16, theirs.data(), count);
    int largest = 0;
    for (size_t i = 0; i < ours.size(); ++i)
        largest = std::max(largest, std::abs(int{ours[i]} - int{theirs[i]}));
    constexpr double kStep = 257.0;
    return largest / kStep;
}

}  // namespace

std::vector<std::shared_ptr<const ProfileView>> profilesOf(const ConversionRequest& request) {
    std::vector<std::shared_ptr<const ProfileView>> views;
    views.reserve(request.profiles.size() + 1);
    for (const ProfileImage& image : request.profiles)
        views.push_back(std::make_shared<ProfileView>(image, static_cast<int>(views.size())));
    if (!request.proof) return views;
    if (views.size() < 2)
        throw FaultError(icErrInvalid, "a proof needs a source and a destination");
    views.insert(views.end() - 1, std::make_shared<ProfileView>(request.proof, kProofProfile));
    return views;
}

ReadyConversion::ReadyConversion(const ConversionRequest& request)
    : chain_(chainOf(request)),
      samplesToSamples_(betweenSamples(chain_)),
      exact_(makeStagesPlan(chain_)) {
    for (const auto& profile : chain_.profiles)
        names_.push_back(profile->description().empty() ? profile->name() : profile->description());
    chain_.profiles.clear();  // what was read from them is in the stages
    choosePlan(request.exact);
}

void ReadyConversion::choosePlan(bool exact) {
    plan_ = exact_;
    if (exact) {
        reason_ = "exact was asked for";
        return;
    }
    if (const auto shaper = makeShaperPlan(samplesToSamples_, inputs(), outputs(), exact_)) {
        plan_ = shaper;
        kind_ = PlanKind::kShaper;
        reason_ = "curves and one matrix, no table is needed";
        largestSteps_ = largestStep(*plan_, *exact_, inSpace());
        return;
    }
    if (!servesTable(inputs(), outputs())) {
        reason_ = "tables are for three and four inputs, this has " + std::to_string(inputs());
        return;
    }
    if (holdsTables()) buildTablePlan();
}

/// Whether a grid suits the stages. The tables of gray prints follow one channel and are finer than
/// any grid; linear XYZ has its shadows within the first cell of every grid.
bool ReadyConversion::holdsTables() {
    if (hasGrayPrint()) {
        reason_ = "the tones of gray prints follow one channel, which a grid would blur";
    } else if (inSpace() == kSpaceXyz) {
        reason_ = "XYZ is linear: all shadows lie within the first cells of a grid";
    }
    return reason_.empty();
}

bool ReadyConversion::hasGrayPrint() const {
    const auto& stages = samplesToSamples_.stages();
    return std::any_of(stages.begin(), stages.end(),
                       [](const PlacedStage& placed) { return isGrayPrintStage(*placed.stage); });
}

TableForm ReadyConversion::builtTable() const {
    return buildTable(chain_, samplesToSamples_, exact_).form;
}

/// Whether stages do where a table doesn't: those without a grid cost little more, and what comes
/// from Lab is measurement data rather than a picture.
bool ReadyConversion::stagesServe() const {
    const auto& stages = samplesToSamples_.stages();
    const auto isCheap = [](const PlacedStage& placed) {
        const Stage* const stage = placed.stage.get();
        return dynamic_cast<const CurveStage*>(stage) != nullptr ||
               dynamic_cast<const AffineStage*>(stage) != nullptr ||
               dynamic_cast<const LabToXyzStage*>(stage) != nullptr ||
               dynamic_cast<const XyzToLabStage*>(stage) != nullptr;
    };
    return isConnectionSpace(inSpace()) || std::all_of(stages.begin(), stages.end(), isCheap);
}

void ReadyConversion::buildTablePlan() {
    kind_ = PlanKind::kTable;
    if (std::optional<TableForm> own = tableFormOf(samplesToSamples_)) {
        table_ = std::move(own);
        plan_ = makeTablePlan(*table_, exact_);
        reason_ = "the profile is a table by itself";
        error_ = measured(chain_, *exact_, *plan_, table_->grid.points.front());
        return;
    }
    BuiltTable built = buildTable(chain_, samplesToSamples_, exact_);
    if (!built.withinLimits && stagesServe()) {
        kind_ = PlanKind::kStages;
        reason_ = "no grid tried keeps to the limits, and the stages cost little more";
        return;
    }
    table_ = std::move(built.form);
    plan_ = built.plan;
    error_ = built.error;
    withinLimits_ = built.withinLimits;
    curves_ = built.curves;
    reason_ = withinLimits_ ? "the smallest grid tried whose measured error keeps to the limits"
                            : "no grid tried keeps to the limits; exact does";
}

}  // namespace lumoxa::engine
