// SPDX-License-Identifier: Apache-2.0
//
// From profiles to what converts pixels.
#pragma once

#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/chain_link.h"
#include "tools/combined_chain.h"
#include "tools/pcs_bridge.h"
#include "tools/profile_source.h"

namespace lumoxa_tool {

struct Conversion {
    std::vector<ChainLink> links;  ///< source and target, or a device link alone
    Table table;        ///< without a transform where the links are applied one after the other
    PcsBridge between;  ///< what then stands between them
    icXformDesc_t desc = {};
    std::string describe() const;
};

/// @throws InputError when a profile can't serve, Interrupted on the user's wish
Conversion makeConversion(const Profile& from, const Profile& to, const ConversionRequest& request);

/// The conversion that a device-link profile stores.
/// @throws InputError when the profile can't serve
Conversion makeLinkConversion(const Profile& link);

}  // namespace lumoxa_tool
