// SPDX-License-Identifier: Apache-2.0
//
// The exact plan: every pixel stage by stage. It serves floating-point pixels and conversions that
// no table holds, and is what all others are measured against.
#pragma once

#include <memory>

#include "convert/chain.h"
#include "convert/plan.h"

namespace lumoxa::engine {

/// @param chain  its stages are shared, the rest is not needed afterwards
std::shared_ptr<const Plan> makeStagesPlan(const Chain& chain);

}  // namespace lumoxa::engine
