// SPDX-License-Identifier: Apache-2.0
//
// A lut16 tag in host byte order, as the combination fills it.
#pragma once

#include <cstdint>

#include "base/c_heap.h"
#include "lumoxa/combine.h"
#include "lut/lut_tag.h"

namespace lumoxa {

using Lut16Ptr = CHeapPtr<icLut16Type>;

/// The three runs of words behind the header of a lut16 tag.
class Lut16View {
  public:
    explicit Lut16View(icLut16Type& lut) : lut_(lut) {}

    uint16_t* inputTable(int channel) const { return words() + channel * inputEntries(); }
    uint16_t* clut() const { return words() + lut_.inputChan * inputEntries(); }
    uint16_t* outputTable(int channel) const {
        return clut() + clutEntries(lut_.inputChan, lut_.clutPoints, lut_.outputChan) +
               channel * outputEntries();
    }
    int inputEntries() const { return lut_.inputEnt; }
    int outputEntries() const { return lut_.outputEnt; }
    int inputs() const { return lut_.inputChan; }
    int outputs() const { return lut_.outputChan; }
    int grid() const { return lut_.clutPoints; }

  private:
    uint16_t* words() const { return reinterpret_cast<uint16_t*>(&lut_ + 1); }

    icLut16Type& lut_;
};

/// entry `i` of an identity table of `entries` entries.
inline uint16_t rampEntry(int i, int entries) {
    return static_cast<uint16_t>(i * 65535.0 / (entries - 1) + 0.5);
}

}  // namespace lumoxa
