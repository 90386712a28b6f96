// SPDX-License-Identifier: Apache-2.0
//
// Black ink that stays black ink: text and rules of a CMYK picture, printed in black alone, don't
// become four colours on another press.
#pragma once

#include <memory>
#include <vector>

#include "convert/stage.h"

namespace lumoxa::engine {

/// The curve from the source's black ink to the destination's, at equal steps of 0..1.
struct BlackInkCurve {
    std::vector<float> ink;   ///< monotone
    double largestError = 0;  ///< of L*, where the destination's black is not dark enough, say
};

/// Matches lightness: each amount of the destination's black is as light as the amount of the
/// source's that becomes it.
///
/// @param wanted    L* of the source's black-only colours as the destination gets them, at equal
///                  steps of ink
/// @param possible  L* of the destination's, likewise
BlackInkCurve matchBlackInk(const std::vector<float>& wanted, const std::vector<float>& possible);

/// Steps at which the two are asked for.
inline constexpr int kBlackInkSteps = 1025;

/// A list of CMYK to CMYK stages in which black-only pixels go through the curve instead.
std::shared_ptr<const Stage> makeBlackInk(StageList whole, BlackInkCurve curve);

}  // namespace lumoxa::engine
