// SPDX-License-Identifier: Apache-2.0
//
// A conversion ready to run: chain, exact stages, and the plan that was chosen for pixels.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "convert/chain.h"
#include "convert/table_builder.h"

namespace lumoxa::engine {

/// A chain that is longer than any use, whose work nobody waits for.
inline constexpr int kMaxProfiles = 255;

struct ConversionRequest {
    std::vector<ProfileImage> profiles;      ///< 1 to kMaxProfiles
    std::vector<icRenderingIntent> intents;  ///< one, or one a step
    ChainOptions options;
    bool exact = false;  ///< no plan but the stages
    ProfileImage proof;  ///< device to simulate before the last profile, or null
    icRenderingIntent proofIntent = icRelativeColorimetric;  ///< from it to the last profile
};

/// The profiles in the order of the chain. A proof is a chain with one profile and one step more:
/// the simulated device is entered before the last profile, whose place in faults stays the same.
/// @throws FaultError
std::vector<std::shared_ptr<const ProfileView>> profilesOf(const ConversionRequest& request);

/// The ways to convert pixels.
enum class PlanKind { kStages, kShaper, kTable };

/// Immutable once made: any number of threads may use it at once.
class ReadyConversion {
  public:
    /// @throws FaultError, std::bad_alloc
    explicit ReadyConversion(const ConversionRequest& request);

    int inputs() const { return chain_.inputs; }
    int outputs() const { return chain_.outputs; }
    uint32_t inSpace() const { return chain_.inSpace; }
    uint32_t outSpace() const { return chain_.outSpace; }
    const Plan& plan() const { return *plan_; }
    const Plan& exactPlan() const { return *exact_; }
    PlanKind kind() const { return kind_; }

    /// The table of the plan, if it is one.
    const std::optional<TableForm>& table() const { return table_; }
    /// A table of three or four inputs, built where the plan is none.
    TableForm builtTable() const;
    /// Whether a gray print device takes part, whose tones no grid holds.
    bool hasGrayPrint() const;
    /// The stages between samples of 0..1 on either side.
    const StageList& samplesToSamples() const { return samplesToSamples_; }

    /// How it works, as JSON (docs/conversions.md).
    std::string explain() const;

  private:
    void choosePlan(bool exact);
    void buildTablePlan();
    bool holdsTables();
    bool stagesServe() const;

    Chain chain_;
    StageList samplesToSamples_;
    std::shared_ptr<const Plan> exact_, plan_;
    PlanKind kind_ = PlanKind::kStages;
    std::string reason_;
    std::string curves_;  // around the table's grid
    std::optional<TableForm> table_;
    std::optional<MeasuredError> error_;
    bool withinLimits_ = true;
    double largestSteps_ = 0;  // of the shaper, in steps of 8 bits
    std::vector<std::string> names_;
};

}  // namespace lumoxa::engine
