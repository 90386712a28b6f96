// SPDX-License-Identifier: Apache-2.0
#include "eval/kernel_table.h"

#include <algorithm>
#include <iterator>

#include "eval/chain_kernels.h"
#include "eval/gray_kernels.h"
#include "eval/matrix_trc_kernels.h"
#include "eval/table_stage.h"
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
constexpr KernelFn kLutKernel =
    kernel<typename Clut::State, In, Out, convertLut<Family, Clut, In, Out>>;

template <class Clut>
void lutOnAllCores(const void* state, const void* source, void* destination, int pixels,
                   CurveMask curves) {
    const auto& s = *static_cast<const typename Clut::State*>(state);
    runOnAllCores(static_cast<const uint16_t*>(source), static_cast<uint16_t*>(destination), pixels,
                  s.inChannels, s.outChannels,
                  [&s, curves](const uint16_t* in, uint16_t* out, ptrdiff_t count) {
                      convertLut<Lut16Family, Clut>(s, in, out, count, curves);
                  });
}

template <class Family, class Clut>
constexpr KernelRow lutRow(KernelFn from16to16 = kLutKernel<Family, Clut, uint16_t, uint16_t>) {
    return {
        {{kLutKernel<Family, Clut, uint8_t, uint8_t>, kLutKernel<Family, Clut, uint8_t, uint16_t>},
         {kLutKernel<Family, Clut, uint16_t, uint8_t>, from16to16}}};
}

/// LUT kinds, by family (lut8; lut16, lutAToB and lutBToA) and by interpolation.
constexpr KernelRow kLutRows[2][3] = {
    {lutRow<Lut8Family, TetraClut>(), lutRow<Lut8Family, PentaClut>(),
     lutRow<Lut8Family, PlainClut>()},
    {lutRow<Lut16Family, TetraClut>(lutOnAllCores<TetraClut>),
     lutRow<Lut16Family, PentaClut>(lutOnAllCores<PentaClut>), lutRow<Lut16Family, PlainClut>()},
};

constexpr KernelFn kTrcMatrixOnAllCores =
    kernelOnAllCores<trcMatrix_t, trcThenMatrix<uint16_t, uint16_t>>;

template <class In, class Out>
constexpr KernelFn kTrcMatrix = kernel<trcMatrix_t, In, Out, trcThenMatrix<In, Out>>;
template <class In, class Out>
constexpr KernelFn kMatrixTrc = kernel<trcMatrix_t, In, Out, matrixThenTrc<In, Out>>;
template <class In>
constexpr KernelFn kGrayTrcToPcs = kernel<trcMatrix_t, In, uint16_t, grayTrcToPcs>;
template <class In, class Out>
constexpr KernelFn kGrayToLab = kernel<GrayConv_t, In, Out, grayToLab<In, Out>>;
template <class In, class Out>
constexpr KernelFn kLabToGray = kernel<GrayConv_t, In, Out, labToGray<In, Out>>;

/// A kernel with the shape of the exported ones.
template <void (*Convert)(const void*, const unsigned short*, unsigned short*, int)>
void exported(const void* state, const void* source, void* destination, int pixels, CurveMask) {
    Convert(state, static_cast<const unsigned short*>(source),
            static_cast<unsigned short*>(destination), pixels);
}

/// The kinds that a transform can be converted by, and those that stand in chains only.
enum class Use { kAnywhere, kInChains };

/// Kernels of one kind. The matrix/TRC kinds have a form of their own for gray devices.
struct KindRow {
    uint32_t kind;
    Use use;
    bool grayTrc;
    KernelRow kernels;
};

constexpr KernelRow only16(KernelFn from16to16) {
    return {{{nullptr, nullptr}, {nullptr, from16to16}}};
}

/// Kinds beside the LUT kinds. None has a kernel from 16 to 8 bits.
constexpr KindRow kKindRows[] = {
    {kKindTrcMatrix,
     Use::kAnywhere,
     false,
     {{{kTrcMatrix<uint8_t, uint8_t>, kTrcMatrix<uint8_t, uint16_t>},
       {nullptr, kTrcMatrixOnAllCores}}}},
    {kKindMatrixTrc,
     Use::kAnywhere,
     false,
     {{{kMatrixTrc<uint8_t, uint8_t>, kMatrixTrc<uint8_t, uint16_t>},
       {nullptr, kMatrixTrc<uint16_t, uint16_t>}}}},
    {kKindTrcMatrix,
     Use::kAnywhere,
     true,
     {{{nullptr, kGrayTrcToPcs<uint8_t>}, {nullptr, kGrayTrcToPcs<uint16_t>}}}},
    {kKindMatrixTrc, Use::kAnywhere, true,
     only16(kernel<trcMatrix_t, uint16_t, uint16_t, pcsToGrayTrc>)},
    {kKindGrayToLab,
     Use::kAnywhere,
     false,
     {{{kGrayToLab<uint8_t, uint8_t>, kGrayToLab<uint8_t, uint16_t>},
       {nullptr, kGrayToLab<uint16_t, uint16_t>}}}},
    {kKindLabToGray,
     Use::kAnywhere,
     false,
     {{{kLabToGray<uint8_t, uint8_t>, kLabToGray<uint8_t, uint16_t>},
       {nullptr, kernelOnAllCores<GrayConv_t, labToGray<uint16_t, uint16_t>>}}}},
    {kKindLabToXyz, Use::kInChains, false, only16(exported<icConvertLabToXyz>)},
    {kKindXyzToLab, Use::kInChains, false, only16(exported<icConvertXYZToLab>)},
    {kKindTableStage, Use::kInChains, false, only16(convertThroughTables)},
    {kKindAbsolute, Use::kInChains, false, only16(kernelOnAllCores<WhiteScaling, scaleWhite>)},
    {kKindPerceptualToRelative, Use::kInChains, false,
     only16(kernelOnAllCores<icBlackWhite_t, squeezeIntoDevice>)},
    {kKindRelativeToPerceptual, Use::kInChains, false,
     only16(kernelOnAllCores<icBlackWhite_t, stretchFromDevice>)},
};

const KernelRow* lutRowOf(const icXformInternal& xform) {
    if (lutStateOf(xform) == nullptr) return nullptr;
    const auto& rows = kLutRows[xform.kind == kTypeLut8 ? 0 : 1];
    if (xform.state.as<icLutTetraState_t>() != nullptr) return &rows[0];
    return xform.state.as<icLutPentaState_t>() != nullptr ? &rows[1] : &rows[2];
}

bool isGrayTrc(const icXformInternal& xform) {
    const auto* s = xform.state.as<trcMatrix_t>();
    return s != nullptr && (xform.kind == kKindMatrixTrc ? s->outSpace : s->inSpace) == kSpaceGray;
}

const KernelRow* kindRowOf(const icXformInternal& xform, Use use) {
    const bool gray = isGrayTrc(xform);
    const auto* row = std::find_if(std::begin(kKindRows), std::end(kKindRows), [&](const auto& r) {
        return r.kind == xform.kind && r.grayTrc == gray &&
               (r.use == use || r.use == Use::kAnywhere);
    });
    return row == std::end(kKindRows) || !xform.state ? nullptr : &row->kernels;
}

BoundKernel bind(const icXformInternal& xform, Depth in, Depth out, Use use, CurveMask curves) {
    const KernelRow* row = isLutType(xform.kind) ? lutRowOf(xform) : kindRowOf(xform, use);
    if (row == nullptr) return {};
    // The 8-bit gray kernel may drop samples, which moves those of the rest of its run.
    const bool perLine = in == Depth::k8 && isGrayTrc(xform);
    return {row->at(in, out),
            xform.state.get(),
            static_cast<int>(xform.inChannels),
            static_cast<int>(xform.outChannels),
            perLine,
            curves};
}

}  // namespace

BoundKernel chooseKernel(const icXformInternal& xform, Depth in, Depth out) {
    return bind(xform, in, out, Use::kAnywhere, {});
}

BoundKernel chooseStageKernel(const icXformInternal& xform, CurveMask curves) {
    return bind(xform, Depth::k16, Depth::k16, Use::kInChains, curves);
}

}  // namespace lumoxa
