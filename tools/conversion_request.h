// SPDX-License-Identifier: Apache-2.0
//
// A conversion as the command line asks for it.
#pragma once

#include <string>
#include <vector>

#include "lumoxa/lumoxa.hpp"
#include "tools/gray_tone.h"
#include "tools/named_profile.h"

namespace lumoxa_tool {

struct ConversionRequest {
    lumoxa::Intent intent = lumoxa::Intent::Relative;
    bool noBlackPointCompensation = false;
    GrayToneOptions tone;

    /// @throws UsageError for a tone that makes no sense
    lumoxa::Options options() const;
};

/// Declares --intent and --no-bpc.
void addConversionOptions(CLI::App& command, ConversionRequest& request);

/// Declares --link, and that it settles what the other options are about.
void addLinkOption(CLI::App& command, std::string& link);

std::string intentText(lumoxa::Intent intent);

/// @param exact  every pixel stage by stage, without a table: nothing has to be built
/// @throws UsageError, InputError; ProfileError when one of the profiles can't serve
lumoxa::Conversion makeConversion(const std::vector<NamedProfile>& chain,
                                  const ConversionRequest& request, bool exact = false);

/// @throws InputError for a profile that stands for no single device
void requireDevice(const NamedProfile& profile);

/// @throws InputError for a profile that is no device link
void requireLink(const NamedProfile& profile);

/// @throws UsageError when a tone is asked for that `to` can't have
void requireTonePossible(const ConversionRequest& request, const NamedProfile& to);

}  // namespace lumoxa_tool
