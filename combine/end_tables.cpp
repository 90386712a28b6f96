// SPDX-License-Identifier: Apache-2.0
#include "combine/end_tables.h"

#include <algorithm>

#include "eval/gray_kernels.h"
#include "profile/pcs_encoding.h"

namespace lumoxa {
namespace {

// A display's black is lifted by 1/24 of the range: 2730.625 = 65535 / 24, so the lifted range is
// 25/24 and the lowered one 23/24 of 65535. The last digits of the lift are kept as they are, being
// part of every table made so far.
constexpr double kBlackLift = 2730.6250000000005;
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
    return *static_cast<const trcMatrix_t*>(xform.state);
}

/// lut16 tags keep their input tables behind the matrix. Carried over, they come to stand before
/// it: deliberate, and seen only by callers that start a chain without any larger grid with a
/// two-point lut16 whose matrix is not the identity.
const TableSet<uint16_t>& inputCurves16(const icLutState_t& s) {
    return s.kind == kTypeLut16 ? s.middleCurves : s.inputCurves;
}

const GrayConv_t& grayState(const icXformInternal& xform) {
    return *static_cast<const GrayConv_t*>(xform.state);
}

bool isGray(uint32_t kind) {
    return kind == kKindGrayToLab || kind == kKindLabToGray;
}

bool isDisplay(uint32_t space, const icXformInternal& xform) {
    return space == kSpaceRgb && xform.deviceClass == kClassDisplay;
}

/// What a record says of its conversion, and its states, of which the copy owns none. Holders and
/// black and white are left out: the caller may be changing them on another thread.
icXformInternal unownedCopy(const icXformInternal& stage) {
    icXformInternal copy{};
    copy.kind = stage.kind;
    std::copy_n(stage.pcsWhite, 3, copy.pcsWhite);
    std::copy_n(stage.mediaWhite, 3, copy.mediaWhite);
    copy.intent = stage.intent;
    copy.transType = stage.transType;
    copy.inSpace = stage.inSpace;
    copy.outSpace = stage.outSpace;
    copy.deviceClass = stage.deviceClass;
    copy.inChannels = stage.inChannels;
    copy.outChannels = stage.outChannels;
    copy.gridPoints = stage.gridPoints;
    copy.inTableEntries = stage.inTableEntries;
    copy.outTableEntries = stage.outTableEntries;
    copy.state = stage.state;
    copy.tetraState = stage.tetraState;
    copy.pentaState = stage.pentaState;
    return copy;
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

StageWithoutCurves::StageWithoutCurves(const icXformInternal& stage) : record_(unownedCopy(stage)) {
    if (stage.kind == kKindTrcMatrix || stage.kind == kKindMatrixTrc) {
        matrix_ = matrixState(stage);
        record_.state = &matrix_;
    } else if (isGray(stage.kind)) {
        gray_ = grayState(stage);
        record_.state = &gray_;
    } else if (stage.tetraState != nullptr) {
        tetra_ = std::make_unique<icLutTetraState_t>(*stage.tetraState);
        record_.tetraState = tetra_.get();
    } else if (stage.pentaState != nullptr) {
        penta_ = std::make_unique<icLutPentaState_t>(*stage.pentaState);
        record_.pentaState = penta_.get();
    } else if (const icLutState_t* s = lutStateOf(stage)) {
        plain_ = std::make_unique<icLutState_t>(*s);
        record_.state = plain_.get();
    }
}

icLutState_t* StageWithoutCurves::lut() {
    if (tetra_) return tetra_.get();
    if (penta_) return penta_.get();
    return plain_.get();
}

void StageWithoutCurves::switchOffInputCurves() {
    // Curves that follow a matrix are no input curves: a MatT stage keeps its own.
    if (record_.kind == kKindTrcMatrix) matrix_.hasCurves = 0;
    if (icLutState_t* s = lut()) {
        s->hasInputCurves = false;
        if (s->kind == kTypeLut16) s->hasMiddleCurves = false;
    }
}

void StageWithoutCurves::switchOffOutputCurves() {
    if (record_.kind == kKindMatrixTrc) matrix_.hasCurves = 0;
    if (record_.kind == kKindLabToGray) gray_.built = 0;
    if (icLutState_t* s = lut()) s->hasOutputCurves = false;
}

}  // namespace lumoxa
