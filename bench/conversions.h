// SPDX-License-Identifier: Apache-2.0
//
// The conversions that are measured: one for every kernel family, and chains of real profiles.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "bench/handles.h"

namespace lumoxa_bench {

/// One transform out of a profile.
struct Link {
    std::shared_ptr<const Bytes> profile;
    icTransType direction;
};

/// A transform as its profile has it (one link), or a combined chain.
struct Conversion {
    std::string name;
    std::vector<Link> links;
};

/// From profile images to a ready transform.
Xform makeXform(const Conversion& conversion);

/// All conversions: real profiles where the system has one of the kind, synthetic ones for the
/// rest. Throws where a real profile is not installed.
std::vector<Conversion> makeConversions();

/// A real profile by the end of its path.
Bytes realProfile(const std::string& pathEnd);

}  // namespace lumoxa_bench
