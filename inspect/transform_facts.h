// SPDX-License-Identifier: Apache-2.0
//
// The transforms of a profile, as the engine makes them: for each direction and intent its stages,
// or the fault that keeps it from being made.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "convert/profile_stages.h"
#include "inspect/subject.h"

namespace lumoxa::inspection {

struct TransformFact {
    const char* direction = "";  ///< "from device", "to device", "link", "abstract"
    std::string intent;          ///< in words; "all intents" where there is one transform
    bool offered = false;        ///< the profile has tags for it
    std::optional<Fault> fault;  ///< why it can't be made
    engine::Side side;           ///< when it is sound
    std::string kind;
    uint32_t from = 0, to = 0;  ///< colour spaces
    int inputs = 0, outputs = 0;
};

/// Empty for what the engine can't read.
std::vector<TransformFact> transformFacts(const Subject& subject);

}  // namespace lumoxa::inspection
