// SPDX-License-Identifier: Apache-2.0
//
// Sample types in the names of tests.
#pragma once

#include <ostream>

#include "convert/plan.h"

namespace lumoxa::engine {

inline void PrintTo(SampleType type, std::ostream* out) {
    *out << (type == SampleType::kU8 ? "8" : type == SampleType::kU16 ? "16" : "float");
}

}  // namespace lumoxa::engine
