// SPDX-License-Identifier: Apache-2.0
//
// Which profiles convert an image: what the command line names, and what the image brings.
#pragma once

#include <optional>
#include <vector>

#include "tools/image_commands.h"
#include "tools/images/source_image.h"

namespace lumoxa_tool {

/// What the output will hold, and what has the last word on its pixels.
struct Target {
    std::optional<NamedProfile> link;
    std::optional<NamedProfile> profile;  // to embed; the target of the conversion where no link is
    uint32_t space = 0;
    bool print = false;  // three channels of a gray device

    /// Other software would take the profile's one tone curve for what the three channels are.
    const NamedProfile* embedded() const { return profile && !print ? &*profile : nullptr; }
};

/// Opens the profiles that --to and --link name. @throws UsageError, InputError
Target openTarget(const ConvertArguments& arguments);

/// What converts, and the profiles that it was made of.
struct Chosen {
    std::vector<NamedProfile> chain;
    lumoxa::Conversion conversion;
};

/// @throws UsageError, InputError when the profiles can't serve, or are for other pixels
Chosen chooseConversion(const ConvertArguments& arguments, const SourceImage& source,
                        const Target& target);

/// A remark, unless the user wants none.
void printNote(const ConvertArguments& arguments, const std::string& text);

}  // namespace lumoxa_tool
