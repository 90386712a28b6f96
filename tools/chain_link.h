// SPDX-License-Identifier: Apache-2.0
//
// One profile's transform with what messages and reports say of it.
#pragma once

#include <cstdint>
#include <string>

#include "lumoxa/lumoxa.h"
#include "tools/gray_tone.h"
#include "tools/profile_source.h"
#include "tools/signatures.h"
#include "tools/xform_handle.h"

namespace lumoxa_tool {

// Profile classes that a chain treats in their own way.
inline constexpr uint32_t kLinkClass = fourCc("link");
inline constexpr uint32_t kAbstractClass = fourCc("abst");
inline constexpr uint32_t kNamedColorClass = fourCc("nmcl");

/// One profile's share of a conversion.
struct ChainLink {
    XformHandle xform;
    icXformDesc_t desc = {};
    uint32_t tag = 0;         ///< the LUT tag it was made from, 0 for curves and matrix
    int grid = 0;             ///< grid points of that tag, 0 without
    std::string profileName;  ///< as messages call the profile
    std::string description;  ///< as the profile calls itself
    std::string notice;       ///< stages that the conversion leaves out; empty when it has all
    std::string describe() const;
};

/// One profile's transform.
/// @throws InputError
ChainLink makeLink(const Profile& profile, uint32_t intent, icTransType direction);

/// The same of a profile that has to describe a device, whose pixels have as many samples as the
/// profile's colour space says.
/// @throws InputError
ChainLink makeDeviceLink(const Profile& profile, uint32_t intent, icTransType direction);

/// The same to a gray device of three channels, for a tone.
/// @throws InputError
ChainLink makeTonedLink(const Profile& profile, uint32_t intent, const GrayTone& tone);

/// Whether a link is of such a device: a table of several would lose too much of its tones.
bool isGrayLink(const ChainLink& link);

/// @throws InputError for a profile that is no device link, or not one between devices
void requireStoredLink(const Profile& profile);

/// The conversion that a device-link profile stores, under the intent that it was made for.
/// @throws InputError as requireStoredLink, and for a faulty tag
ChainLink makeStoredLink(const Profile& profile);

}  // namespace lumoxa_tool
