// SPDX-License-Identifier: Apache-2.0
//
// Which curves of a state take part in a conversion.
#pragma once

namespace lumoxa {

/// A combination whose tables carry the curves of its end stages samples its grid without them.
/// Curves that stand inside a stage (the M curves of a lutBToA tag) are no one's to switch off.
struct CurveMask {
    bool input = true;
    bool output = true;
};

}  // namespace lumoxa
