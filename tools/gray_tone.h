// SPDX-License-Identifier: Apache-2.0
//
// The tone that a print on a gray device of three channels is to have, as the command line has it.
#pragma once

#include <optional>
#include <string>

#include "lumoxa/lumoxa.hpp"

namespace CLI {
class App;
}

namespace lumoxa_tool {

/// As on the command line; empty where nothing is given.
struct GrayToneOptions {
    std::string tone, splitTone, fade, shape;
    bool noShape = false;
};

/// Declares --tone, --split-tone, --fade, --shape and --no-shape.
void addToneOptions(CLI::App& command, GrayToneOptions& options);

/// @return nothing where nothing is given
/// @throws UsageError for a value that makes no sense, also with the intent
std::optional<lumoxa::GrayTone> parseTone(const GrayToneOptions& options, lumoxa::Intent intent);

}  // namespace lumoxa_tool
