// SPDX-License-Identifier: Apache-2.0
//
// A limit to the total of inks, as presses and proofers need it.
#pragma once

#include <memory>

#include "convert/stage.h"

namespace lumoxa::engine {

/// Keeps the sum of all inks to a limit: what is too much is taken from the colours in proportion,
/// which keeps their hue, and only then from black.
///
/// Samples are rounded afterwards, each by up to half a step of 8 bits. The stage leaves room for
/// that, so that no pixel is above the limit, whatever its samples.
///
/// @param channels  inks
/// @param black     which of them is black, -1 for none
/// @param percent   the limit; 100 is one full ink
std::shared_ptr<const Stage> makeInkLimit(int channels, int black, float percent);

}  // namespace lumoxa::engine
