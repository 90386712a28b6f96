// SPDX-License-Identifier: Apache-2.0
//
// A transform that releases itself, and transforms made from a tag that no file holds.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/profile_handle.h"

namespace lumoxa_tool {

struct XformFree {
    void operator()(const icXformInternal* xform) const { icXformFree(xform); }
};
using XformHandle = std::unique_ptr<const icXformInternal, XformFree>;

/// A new profile in memory, version 2.4, without any tag but the copyright that the library gives
/// it.
/// @throws std::bad_alloc
ProfileHandle newProfile(uint32_t deviceClass, uint32_t inSpace, uint32_t outSpace,
                         icRenderingIntent intent);

/// Adds a tag in file byte order. @throws std::bad_alloc
void addTag(const ProfileHandle& profile, uint32_t signature, const std::vector<uint8_t>& bytes);

/// The transform of a LUT tag in file byte order, as if a profile held it.
/// @throws std::bad_alloc
XformHandle xformOfTag(uint32_t deviceClass, uint32_t inSpace, uint32_t outSpace,
                       icRenderingIntent intent, const std::vector<uint8_t>& tag);

}  // namespace lumoxa_tool
