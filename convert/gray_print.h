// SPDX-License-Identifier: Apache-2.0
//
// Gray print devices of three channels (a main ink and two weak companions): profiles with measured
// patches, whose stages are three tables read at one position.
#pragma once

#include <array>
#include <vector>

#include "convert/profile_stages.h"

namespace lumoxa::engine {

/// The tone that a print is to have.
struct GrayPrintTone {
    bool given = false;         ///< whether the caller asked for one
    float a = 0, b = 0;         ///< a* and b*, 0 and 0 is neutral
    float fade = 0;             ///< 0..1: how far the tone goes to neutral at paper and black
    std::vector<float> points;  ///< split tone: triples of L*, a*, b*
    bool shaped = true;
    float shape = 0;

    bool operator==(const GrayPrintTone&) const = default;
};

/// Samples of a pixel of such a device, whatever its colour space says.
inline constexpr int kGrayPrintChannels = 3;

/// Whether a profile's stages in a direction come from measured patches.
bool isGrayPrint(const ProfileView& profile, Direction direction);

/// @throws FaultError for a faulty tag or a tone that can't be made
Side grayPrintSide(const ProfileView& profile, uint32_t intent, Direction direction,
                   const GrayPrintTone& tone);

/// Whether a stage reads such tables.
bool isGrayPrintStage(const Stage& stage);

}  // namespace lumoxa::engine
