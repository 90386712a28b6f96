// SPDX-License-Identifier: Apache-2.0
//
// From a source and a target profile to the one transform that converts pixels.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/pcs_bridge.h"
#include "tools/profile_source.h"

namespace lumoxa_tool {

struct XformFree {
    void operator()(const icXformInternal* xform) const { icXformFree(xform); }
};
using XformHandle = std::unique_ptr<const icXformInternal, XformFree>;

/// One profile's share of a conversion.
struct ChainLink {
    XformHandle xform;
    icXformDesc_t desc = {};
    uint32_t tag = 0;  ///< the LUT tag it was made from, 0 for curves and matrix
    int grid = 0;      ///< grid points of that tag, 0 without
    std::string describe() const;
};

struct Conversion {
    ChainLink from;
    ChainLink to;
    XformHandle combined;  ///< null where `from` and `to` are applied one after the other
    PcsBridge between;     ///< what then stands between them
    icXformDesc_t desc = {};
    /// Sentences for the user: stages of the profiles that the conversion leaves out.
    std::vector<std::string> notices;
    std::string describe() const;
};

struct ConversionRequest {
    icRenderingIntent intent = icRelativeColorimetric;
    bool displayFlare = false;  ///< black of RGB displays is lifted and lowered by their flare
};

/// @throws InputError when a profile can't serve, Interrupted on the user's wish
Conversion makeConversion(const Profile& from, const Profile& to, const ConversionRequest& request);

/// One profile's transform.
/// @throws InputError
ChainLink makeLink(const Profile& profile, uint32_t intent, icTransType direction);

/// The same of a profile that has to describe a device; the parts of makeConversion.
/// @throws InputError
ChainLink makeDeviceLink(const Profile& profile, uint32_t intent, icTransType direction);

}  // namespace lumoxa_tool
