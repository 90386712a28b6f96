// SPDX-License-Identifier: Apache-2.0
#include "tools/lut_tag.h"

#include <algorithm>

#include "tools/signatures.h"

namespace lumoxa_tool {
namespace {

using Bytes = std::vector<uint8_t>;

constexpr uint32_t kOne = 0x10000;  // 1.0 in s15Fixed16

bool holds(const Bytes& tag, uint64_t at, uint64_t size) {
    return at + size <= tag.size();
}

// Offset of a stage in a lutAtoB or lutBtoA tag, 0 for an absent one; the fields lie at 12 (B
// curves), 16 (matrix), 20 (M curves), 24 (CLUT) and 28 (A curves).
uint32_t stageOffset(const Bytes& tag, size_t field) {
    return holds(tag, field, 4) ? bigEndian32(&tag[field]) : 0;
}

bool matrixActs(const Bytes& tag, uint32_t at) {
    if (at == 0 || !holds(tag, at, 48)) return false;
    for (size_t i = 0; i < 12; ++i) {
        const bool diagonal = i == 0 || i == 4 || i == 8;
        if (bigEndian32(&tag[at + 4 * i]) != (diagonal ? kOne : 0)) return true;
    }
    return false;
}

// Size of the curve at `at`, or 0 when it does not fit the tag.
uint64_t curveSize(const Bytes& tag, uint64_t at) {
    static constexpr uint64_t kParameters[] = {1, 3, 4, 5, 7};
    if (!holds(tag, at, 12)) return 0;
    uint64_t data = 0;
    if (bigEndian32(&tag[at]) == fourCc("curv")) {
        data = 2 * uint64_t{bigEndian32(&tag[at + 8])};
    } else {
        const uint32_t function = bigEndian16(&tag[at + 8]);
        if (function >= std::size(kParameters)) return 0;
        data = 4 * kParameters[function];
    }
    return holds(tag, at + 12, data) ? 12 + (data + 3) / 4 * 4 : 0;
}

bool curveActs(const Bytes& tag, uint64_t at) {
    if (bigEndian32(&tag[at]) != fourCc("curv")) {
        // Function 0 with exponent 1 is the only parametric identity that profiles use.
        return bigEndian16(&tag[at + 8]) != 0 || bigEndian32(&tag[at + 12]) != kOne;
    }
    const uint32_t count = bigEndian32(&tag[at + 8]);
    if (count == 0) return false;
    if (count == 1) return bigEndian16(&tag[at + 12]) != 0x100;  // gamma 1.0
    for (uint64_t i = 0; i < count; ++i) {
        const auto ramp = static_cast<int64_t>((i * 65535 + (count - 1) / 2) / (count - 1));
        const auto entry = static_cast<int64_t>(bigEndian16(&tag[at + 12 + 2 * i]));
        if (std::abs(entry - ramp) > 1) return true;
    }
    return false;
}

bool curvesAct(const Bytes& tag, uint64_t at, int count) {
    for (int i = 0; at != 0 && i < count; ++i) {
        const uint64_t size = curveSize(tag, at);
        if (size == 0) return false;
        if (curveActs(tag, at)) return true;
        at += size;
    }
    return false;
}

}  // namespace

int gridPoints(const Tag& lut) {
    const Bytes& tag = lut.bytes;
    if (tag.size() < 32) return 0;
    if (lut.type == kLut8 || lut.type == kLut16) return tag[10];
    const uint32_t clut = stageOffset(tag, 24);
    if (clut == 0 || !holds(tag, clut, 16)) return 0;
    const auto first = tag.begin() + clut;
    return *std::max_element(first, first + std::clamp<int>(tag[8], 1, 16));
}

std::string stagesLeftOut(const Tag& lut) {
    const Bytes& tag = lut.bytes;
    if ((lut.type != kLutAToB && lut.type != kLutBToA) || tag.size() < 32) return {};
    const bool aToB = lut.type == kLutAToB;
    const int channels = aToB ? tag[9] : tag[8];  // matrix and M curves are on the side of the PCS
    const bool noMatrix = aToB && matrixActs(tag, stageOffset(tag, 16));
    const bool noCurves =
        (aToB || stageOffset(tag, 28) == 0) && curvesAct(tag, stageOffset(tag, 20), channels);
    if (noMatrix && noCurves) return "matrix and M curves";
    if (noMatrix) return "matrix";
    return noCurves ? "M curves" : "";
}

}  // namespace lumoxa_tool
