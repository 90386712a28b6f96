// SPDX-License-Identifier: Apache-2.0
//
// What stands between two transforms that are applied one after the other: the conversion between
// the connection spaces, XYZ and Lab, and the white scaling of absolute colorimetry.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "tools/profile_source.h"

namespace lumoxa_tool {

class PcsBridge {
  public:
    /// Passes everything on.
    PcsBridge() = default;

    /// @param from, to   profiles on the two sides
    /// @param fromSpace  'XYZ ' or 'Lab ', of what the first transform gives
    /// @param toSpace    the same, of what the second one takes
    /// @param absolute   whether colours are those of the media, not relative to their whites
    PcsBridge(const Profile& from, const Profile& to, uint32_t fromSpace, uint32_t toSpace,
              bool absolute);

    /// Converts packed 16-bit pixels of three samples in place, in double precision.
    void apply(uint16_t* samples, size_t pixels) const;

  private:
    bool idle_ = true;
    bool fromLab_ = false;
    bool toLab_ = false;
    std::array<double, 3> white_ = {1, 1, 1};  // of the connection space
    std::array<double, 3> scale_ = {1, 1, 1};
};

}  // namespace lumoxa_tool
