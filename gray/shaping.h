// SPDX-License-Identifier: Apache-2.0
//
// A tone curve that gives the middle tones back the contrast that black compensation takes.
#pragma once

namespace lumoxa {

/// From 0..1 to 0..1: a straight line in the middle, joined at either end by an odd cubic that
/// meets it with equal value and slope. With parameter 0 the line has the slope of a print without
/// black compensation, 1 / (1 - black); above 0 it is steeper, below 0 flatter.
///
/// The cubics rise as long as the line leaves the range no farther than a third of it inwards: for
/// parameters from 4 - 12 / (1 + 2 black) to 8 - 24 black. What lies beyond is kept as it is, since
/// prints have been made with it.
///
/// @param black  L* of the black as a share of the white's, below 1
double shapedTone(double black, double t, double parameter);

}  // namespace lumoxa
