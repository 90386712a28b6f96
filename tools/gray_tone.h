// SPDX-License-Identifier: Apache-2.0
//
// Gray devices of three channels, and the tone that a print on one is to have.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/profile_source.h"
#include "tools/signatures.h"

namespace CLI {
class App;
}

namespace lumoxa_tool {

/// Samples of a pixel of such a device, whatever its colour space says.
inline constexpr int kGrayDeviceChannels = 3;

/// Whether a profile's transforms come from measured patches of a gray device.
bool isGrayDevice(const Profile& profile, icTransType direction);

/// Samples of a device pixel; 0 for a space that ICC.1 doesn't list.
int deviceChannels(const Profile& profile, icTransType direction);

/// As on the command line; empty where nothing is given.
struct GrayToneOptions {
    std::string tone, splitTone, fade, shape;
    bool noShape = false;

    bool given() const;
};

/// Declares --tone, --split-tone, --fade, --shape and --no-shape.
void addToneOptions(CLI::App& command, GrayToneOptions& options);

/// What is asked of the library.
struct GrayTone {
    std::optional<std::array<unsigned short, 2>> pair;  ///< none: neutral
    std::vector<float> splitTone;                       ///< triples of L*, a*, b*
    float fade = 0;
    bool shaped = true;
    float shape = 0;
};

/// @throws UsageError for a value that makes no sense, also with the intent
GrayTone parseTone(const GrayToneOptions& options, icRenderingIntent intent);

/// The transform to a gray device for a tone. @return a result code of the library
int getTonedXform(icProfile_t profile, icRenderingIntent intent, const GrayTone& tone,
                  icXform_t* out);

}  // namespace lumoxa_tool
