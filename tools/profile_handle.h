// SPDX-License-Identifier: Apache-2.0
//
// Ownership of what the library hands out: profiles and blocks of memory.
#pragma once

#include <memory>

#include "lumoxa/lumoxa.h"

namespace lumoxa_tool {

struct ProfileFree {
    void operator()(const icProfileInternal* profile) const { icProfileFree(profile); }
};
using ProfileHandle = std::unique_ptr<const icProfileInternal, ProfileFree>;

struct BlockFree {
    void operator()(void* block) const { icFree(block); }
};

}  // namespace lumoxa_tool
