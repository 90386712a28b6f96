// SPDX-License-Identifier: Apache-2.0
//
// Synthetic profiles as the accurate engine views them, and its stages run on one colour.
#pragma once

#include <memory>
#include <vector>

#include "convert/profile_view.h"
#include "convert/stages.h"
#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

inline std::shared_ptr<const lumoxa::engine::ProfileView> viewOf(const Bytes& profile,
                                                                 int index = 0) {
    return std::make_shared<lumoxa::engine::ProfileView>(std::make_shared<const Bytes>(profile),
                                                         index);
}

inline std::vector<float> through(const lumoxa::engine::StageList& list,
                                  const std::vector<float>& colour, size_t outputs) {
    std::vector<float> result(outputs);
    list.convert(colour.data(), static_cast<int>(colour.size()), result.data(),
                 static_cast<int>(outputs));
    return result;
}

}  // namespace lumoxa_test
