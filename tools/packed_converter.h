// SPDX-License-Identifier: Apache-2.0
//
// A conversion applied to packed pixels.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tools/packed_pixels.h"
#include "tools/transform_chain.h"

namespace lumoxa_tool {

/// Converts runs of pixels, whichever way the conversion goes. It keeps a buffer from run to run,
/// so each thread has one of its own.
class PackedConverter {
  public:
    /// @param conversion  must outlive the converter
    explicit PackedConverter(const Conversion& conversion) : conversion_(&conversion) {}

    /// @return a result code of the library
    int convert(const PackedPixels& source, const PackedPixels& target, size_t pixels);

  private:
    int convertInSteps(const PackedPixels& source, const PackedPixels& target, size_t pixels);
    PackedPixels widened(const PackedPixels& source, size_t pixels);

    const Conversion* conversion_;
    std::vector<uint16_t> wide_;     // the source at 16 bits, where that is needed
    std::vector<uint16_t> between_;  // connection space
    std::vector<uint16_t> result_;   // at 16 bits, before it is rounded
};

}  // namespace lumoxa_tool
