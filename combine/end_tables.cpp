// SPDX-License-Identifier: Apache-2.0
#include "combine/end_tables.h"

#include <algorithm>

#include "base/pcs_encoding.h"
#include "eval/gray_kernels.h"

namespace lumoxa {
namespace {

// A display's black is lifted by 1/24 of the range, so the lifted range is 25/24 and the lowered
// one 23/24 of 65535.
constexpr double kBlackLift = 2730.625;      // 65535 / 24
constexpr double kLiftedRange = 68265.625;   // 65535 x 25 / 24
constexpr double kLoweredRange = 62804.375;  // 65535 x 23 / 24

template <class Entry>
void copyScaled(const TableSet<Entry>& set, int channel, int entries, int scale, uint16_t* table) {
    const Entry* source = set.table(channel);
    for (int i = 0; i < entries; ++i)
        table[i] = static_cast<uint16_t>(source[i] * scale);
}

void roundCurve(const trcMatrix_t& state, int channel, int entries, uint16_t* table) {
    for (int i = 0; i < entries; ++i) {
        table[i] = roundWrapped<uint16_t>(state.curves[channel][i]);
    }
}

const trcMatrix_t& matrixState(const icXformInternal& xform) {
    return *xform.state.as<trcMatrix_t>();
}

/// lut16 tags keep their input tables behind the matrix. Carried over, they stand before it, which
/// changes the result of a chain that starts with a two-point lut16 whose matrix is not the
/// identity and that has no larger grid.
const TableSet<uint16_t>& inputCurves16(const icLutState_t& s) {
    return s.kind == kTypeLut16 ? s.middleCurves : s.inputCurves;
}

const GrayConv_t& grayState(const icXformInternal& xform) {
    return *xform.state.as<GrayConv_t>();
}

bool isDisplay(uint32_t space, const icXformInternal& xform) {
    return space == kSpaceRgb && xform.deviceClass == kClassDisplay;
}

template <class Change>
void changeTables(int channels, int entries, uint16_t* (Lut16View::*table)(int) const,
                  const Lut16View& lut, Change change) {
    for (int c = 0; c < channels; ++c) {
        uint16_t* entry = (lut.*table)(c);
        std::transform(entry, entry + entries, entry, change);
    }
}

}  // namespace

void fillInputTables(const icXformInternal& first, const Lut16View& lut) {
    const icLutState_t* s = lutStateOf(first);
    for (int c = 0; c < lut.inputs(); ++c) {
        uint16_t* table = lut.inputTable(c);
        if (first.kind == kKindTrcMatrix) {
            roundCurve(matrixState(first), c, lut.inputEntries(), table);
        } else if (s != nullptr && s->inputTables8) {
            copyScaled(s->inputTables8, c, lut.inputEntries(), 257, table);
        } else if (s != nullptr && inputCurves16(*s)) {
            copyScaled(inputCurves16(*s), c, lut.inputEntries(), 1, table);
        }
    }
}

void fillOutputTables(const icXformInternal& last, const Lut16View& lut) {
    const icLutState_t* s = lutStateOf(last);
    const int entries = lut.outputEntries();
    for (int c = 0; c < lut.outputs(); ++c) {
        uint16_t* table = lut.outputTable(c);
        if (last.kind == kKindMatrixTrc) {
            roundCurve(matrixState(last), c, entries, table);
        } else if (last.kind == kKindLabToGray) {
            std::copy_n(outTablesOf(grayState(last)).tables[c], entries, table);
        } else if (s != nullptr && s->outputTables8) {
            copyScaled(s->outputTables8, c, entries, isConnectionSpace(last.outSpace) ? 256 : 257,
                       table);
        } else if (s != nullptr && s->outputCurves) {
            copyScaled(s->outputCurves, c, entries, 1, table);
        } else {
            for (int i = 0; i < entries; ++i)
                table[i] = rampEntry(i, entries);
        }
    }
}

void liftDisplayBlack(const icXformInternal& first, const Lut16View& lut) {
    if (!isDisplay(first.inSpace, first)) return;
    changeTables(lut.inputs(), lut.inputEntries(), &Lut16View::inputTable, lut, [](uint16_t v) {
        const double lifted = std::min(1.0, (v + kBlackLift) / kLiftedRange);
        return static_cast<uint16_t>(lifted * 65535.0 + 0.5);
    });
}

void removeDisplayBlack(const icXformInternal& first, const icXformInternal& last,
                        const Lut16View& lut) {
    if (first.inSpace == kSpaceLab || !isDisplay(last.outSpace, last)) return;
    changeTables(lut.outputs(), lut.outputEntries(), &Lut16View::outputTable, lut, [](uint16_t v) {
        const double lowered = std::max(0.0, (v - kBlackLift) / kLoweredRange);
        return static_cast<uint16_t>(lowered * 65535.0 + 0.5);
    });
}

}  // namespace lumoxa
