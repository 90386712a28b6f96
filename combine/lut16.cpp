// SPDX-License-Identifier: Apache-2.0
#include "combine/lut16.h"

#include <limits>

namespace lumoxa {
namespace {

constexpr int32_t kFixedOne = 0x10000;

bool isEntryCount(int entries) {
    return entries >= 2 && entries <= 65535;
}

bool possible(int inChannels, int inEntries, int grid, int outChannels, int outEntries) {
    return inChannels >= 1 && inChannels <= kMaxInputs && outChannels >= 1 &&
           outChannels <= kMaxOutputs && grid >= 2 && grid <= 255 && isEntryCount(inEntries) &&
           isEntryCount(outEntries);
}

void fillRamp(uint16_t* table, int entries) {
    for (int i = 0; i < entries; ++i)
        table[i] = rampEntry(i, entries);
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icAllocLut16(icLut16Type** out, int inChannels, int inEntries, int grid, int outChannels,
                 int outEntries, unsigned int* size) {
    if (out != nullptr) *out = nullptr;
    if (inEntries == 0) inEntries = 2;
    if (outEntries == 0) outEntries = 2;
    if (!possible(inChannels, inEntries, grid, outChannels, outEntries)) return icErrInvalid;
    const uint64_t words =
        static_cast<uint64_t>(inEntries) * static_cast<uint64_t>(inChannels) +
        static_cast<uint64_t>(outEntries) * static_cast<uint64_t>(outChannels) +
        clutEntries(static_cast<uint32_t>(inChannels), static_cast<uint32_t>(grid),
                    static_cast<uint32_t>(outChannels));
    const uint64_t bytes = sizeof(icLut16Type) + 2 * words + 2;
    // A tag's size is a 32-bit number.
    if (bytes > std::numeric_limits<uint32_t>::max()) return icErrNoMemory;
    auto lut = allocateZeroed<icLut16Type>(static_cast<size_t>(bytes));
    if (!lut) return icErrNoMemory;
    lut->sig = kTypeLut16;
    lut->inputChan = static_cast<uint8_t>(inChannels);
    lut->outputChan = static_cast<uint8_t>(outChannels);
    lut->clutPoints = static_cast<uint8_t>(grid);
    lut->e00 = lut->e11 = lut->e22 = kFixedOne;
    lut->inputEnt = static_cast<uint16_t>(inEntries);
    lut->outputEnt = static_cast<uint16_t>(outEntries);
    const Lut16View view(*lut);
    for (int c = 0; c < inChannels; ++c)
        fillRamp(view.inputTable(c), inEntries);
    for (int c = 0; c < outChannels && outEntries == 2; ++c)
        fillRamp(view.outputTable(c), 2);
    if (size != nullptr) *size = static_cast<unsigned int>(bytes);
    if (out != nullptr) *out = lut.release();
    return icSuccess;
}
