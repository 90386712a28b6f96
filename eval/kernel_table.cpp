// SPDX-License-Identifier: Apache-2.0
#include "eval/kernel_table.h"

#include "eval/gray_kernels.h"
#include "eval/matrix_trc_kernels.h"
#include "lut/plain_kernels.h"

namespace lumoxa {
namespace {

/// Kernels of one kind and state by depth.
struct KernelRow {
    KernelFn by[2][2];  // [source depth][destination depth]

    KernelFn at(Depth in, Depth out) const {
        return by[static_cast<int>(in)][static_cast<int>(out)];
    }
};

template <class Family, class Clut, class In, class Out>
void lutKernel(const void* state, const void* source, void* destination, int pixels) {
    using State = typename Clut::State;
    kernel<State, In, Out, convertLut<Family, Clut, In, Out>>(state, source, destination, pixels);
}

template <class Clut>
void lutOnAllCores(const void* state, const void* source, void* destination, int pixels) {
    using State = typename Clut::State;
    const auto& s = *static_cast<const State*>(state);
    runOnAllCores<State, convertLut<Lut16Family, Clut, uint16_t, uint16_t>>(
        s, static_cast<const uint16_t*>(source), static_cast<uint16_t*>(destination), pixels,
        s.inChannels, s.outChannels);
}

template <class Family, class Clut>
constexpr KernelRow lutRow(KernelFn from16to16 = lutKernel<Family, Clut, uint16_t, uint16_t>) {
    return {
        {{lutKernel<Family, Clut, uint8_t, uint8_t>, lutKernel<Family, Clut, uint8_t, uint16_t>},
         {lutKernel<Family, Clut, uint16_t, uint8_t>, from16to16}}};
}

/// LUT kinds, by family (lut8; lut16, lutAToB and lutBToA) and by LutStateKind.
constexpr KernelRow kLutRows[2][3] = {
    {lutRow<Lut8Family, TetraClut>(), lutRow<Lut8Family, PentaClut>(),
     lutRow<Lut8Family, PlainClut>()},
    {lutRow<Lut16Family, TetraClut>(lutOnAllCores<TetraClut>),
     lutRow<Lut16Family, PentaClut>(lutOnAllCores<PentaClut>), lutRow<Lut16Family, PlainClut>()},
};

void trcMatrix8(const void* state, const void* source, void* destination, int pixels) {
    icConvertTrcMatrix(state, static_cast<const uint8_t*>(source),
                       static_cast<uint16_t*>(destination), pixels);
}
void trcMatrix16(const void* state, const void* source, void* destination, int pixels) {
    icConvertTrcMatrix(state, static_cast<const uint16_t*>(source),
                       static_cast<uint16_t*>(destination), pixels);
}
void matrixTrc16(const void* state, const void* source, void* destination, int pixels) {
    icConvertMatrixTrc(state, static_cast<const uint16_t*>(source),
                       static_cast<uint16_t*>(destination), pixels);
}

/// Matrix/TRC kinds. There is no kernel from 16 to 8 bits; gray states have one for 16-bit samples
/// in either direction and one from 8-bit gray.
struct MatrixRow {
    uint32_t kind;
    bool gray;
    KernelRow kernels;
};
constexpr MatrixRow kMatrixRows[] = {
    {kKindTrcMatrix,
     false,
     {{{kernel<trcMatrix_t, uint8_t, uint8_t, trcThenMatrix<uint8_t, uint8_t>>, trcMatrix8},
       {nullptr, trcMatrix16}}}},
    {kKindMatrixTrc,
     false,
     {{{kernel<trcMatrix_t, uint8_t, uint8_t, matrixThenTrc<uint8_t, uint8_t>>,
        kernel<trcMatrix_t, uint8_t, uint16_t, matrixThenTrc<uint8_t, uint16_t>>},
       {nullptr, matrixTrc16}}}},
    {kKindTrcMatrix, true, {{{nullptr, trcMatrix8}, {nullptr, trcMatrix16}}}},
    {kKindMatrixTrc, true, {{{nullptr, nullptr}, {nullptr, matrixTrc16}}}},
};

void labToGray16(const void* state, const void* source, void* destination, int pixels) {
    runOnAllCores<GrayConv_t, convertGray<uint16_t, uint16_t, outTablesOf>>(
        *static_cast<const GrayConv_t*>(state), static_cast<const uint16_t*>(source),
        static_cast<uint16_t*>(destination), pixels, 3, 3);
}

template <class In, class Out, GrayTableView (*TablesOf)(const GrayConv_t&)>
constexpr KernelFn kGrayKernel = kernel<GrayConv_t, In, Out, convertGray<In, Out, TablesOf>>;

/// Gray kinds. There is no kernel from 16 to 8 bits.
constexpr KernelRow kGrayToLabRow = {
    {{kGrayKernel<uint8_t, uint8_t, inTablesOf>, kGrayKernel<uint8_t, uint16_t, inTablesOf>},
     {nullptr, kGrayKernel<uint16_t, uint16_t, inTablesOf>}}};
constexpr KernelRow kLabToGrayRow = {
    {{kGrayKernel<uint8_t, uint8_t, outTablesOf>, kGrayKernel<uint8_t, uint16_t, outTablesOf>},
     {nullptr, labToGray16}}};

BoundKernel lutKernelOf(const icXformInternal& xform, Depth in, Depth out) {
    const icLutState_t* lut = lutStateOf(xform);
    if (lut == nullptr) return {};
    const void* states[] = {xform.tetraState, xform.pentaState, xform.state};
    size_t kind = 0;
    while (states[kind] == nullptr)
        ++kind;
    const int family = xform.kind == kTypeLut8 ? 0 : 1;
    return {kLutRows[family][kind].at(in, out), states[kind], lut->inChannels, lut->outChannels,
            false};
}

BoundKernel matrixKernelOf(const icXformInternal& xform, Depth in, Depth out) {
    const auto* state = static_cast<const trcMatrix_t*>(xform.state);
    if (state == nullptr) return {};
    const bool toDevice = xform.kind == kKindMatrixTrc;
    const bool gray = (toDevice ? state->outSpace : state->inSpace) == kSpaceGray;
    for (const MatrixRow& row : kMatrixRows) {
        if (row.kind != xform.kind || row.gray != gray) continue;
        // The 8-bit gray kernel may drop samples, which moves those of the rest of its run.
        const bool perLine = gray && in == Depth::k8;
        return {row.kernels.at(in, out), state, gray && !toDevice ? 1 : 3, gray && toDevice ? 1 : 3,
                perLine};
    }
    return {};
}

}  // namespace

BoundKernel chooseKernel(const icXformInternal& xform, Depth in, Depth out) {
    if (isLutType(xform.kind)) return lutKernelOf(xform, in, out);
    if (xform.kind == kKindTrcMatrix || xform.kind == kKindMatrixTrc) {
        return matrixKernelOf(xform, in, out);
    }
    if (xform.state == nullptr) return {};
    if (xform.kind == kKindGrayToLab) return {kGrayToLabRow.at(in, out), xform.state, 3, 3, false};
    if (xform.kind == kKindLabToGray) return {kLabToGrayRow.at(in, out), xform.state, 3, 3, false};
    return {};
}

}  // namespace lumoxa
