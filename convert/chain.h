// SPDX-License-Identifier: Apache-2.0
//
// From a chain of profiles to the stages that lead from its first device to its last.
//
// A chain of n profiles has n - 1 steps, and a step's intent chooses the tables on both its sides:
// a profile in the middle is entered by one step and left by the next. A device link stands for a
// whole step; an abstract profile changes colours within the connection space.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "convert/black_ink.h"
#include "convert/black_point.h"
#include "convert/gray_print.h"
#include "convert/profile_stages.h"

namespace lumoxa::engine {

/// What a caller may choose, whatever the profiles are.
struct ChainOptions {
    bool blackPointCompensation = true;
    GrayPrintTone tone;  ///< of the last profile, where that is a gray print device
    bool markOutOfGamut = false;
    std::array<float, 3> gamutMark = {0.5f, 0.5f, 0.5f};  ///< sRGB
    bool preserveBlack = false;  ///< black-only pixels of CMYK stay black-only
    float inkLimit = 0;          ///< in percent, 0 for none

    bool operator==(const ChainOptions&) const = default;
};

struct ChainRequest {
    std::vector<icRenderingIntent> intents;  ///< one a step
    int gamutDevice = -1;  ///< whose gamut is marked; place in the chain, -1 for the last
    ChainOptions options;
};

/// What happened to white and black in a step, for reports.
struct StepReport {
    icRenderingIntent intent = icRelativeColorimetric;
    int from = 0, to = 0;  ///< places in the chain
    bool compensated = false;
    BlackPoint sourceBlack, destinationBlack;  ///< where compensated
    std::string note;                          ///< why not, where asked for and not done
};

/// What is done for presses, for reports.
struct PrintReport {
    std::optional<double> gamutLimit;  ///< Delta E*ab beyond which colours are marked
    bool gamutByTag = false;           ///< tag 'gamt' tells, and there is no limit
    std::optional<BlackInkCurve> blackInk;
    float inkLimit = 0;
};

/// A conversion as the profiles define it.
struct Chain {
    std::vector<std::shared_ptr<const ProfileView>> profiles;
    uint32_t inSpace = 0, outSpace = 0;
    int inputs = 0, outputs = 0;
    StageList stages;  ///< from colours of inSpace to those of outSpace
    std::vector<StepReport> steps;
    std::vector<std::string> notes;
    PrintReport print;

    /// From colours of outSpace to Lab, by which errors are measured; empty where nothing tells.
    StageList toLab;
};

/// @throws FaultError naming the profile that can't stand where it stands
Chain makeChain(std::vector<std::shared_ptr<const ProfileView>> profiles,
                const ChainRequest& request);

}  // namespace lumoxa::engine
