// SPDX-License-Identifier: Apache-2.0
#include "eval/kernel_table.h"

#include <algorithm>
#include <functional>
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

template <class Family, class Clut>
constexpr KernelRow kLutRow = {
    {{kLutKernel<Family, Clut, uint8_t, uint8_t>, kLutKernel<Family, Clut, uint8_t, uint16_t>},
     {kLutKernel<Family, Clut, uint16_t, uint8_t>, kLutKernel<Family, Clut, uint16_t, uint16_t>}}};

/// LUT kinds, by family (lut8; lut16, lutAToB and lutBToA) and by interpolation.
constexpr KernelRow kLutRows[2][3] = {
    {kLutRow<Lut8Family, TetraClut>, kLutRow<Lut8Family, PentaClut>,
     kLutRow<Lut8Family, PlainClut>},
    {kLutRow<Lut16Family, TetraClut>, kLutRow<Lut16Family, PentaClut>,
     kLutRow<Lut16Family, PlainClut>},
};

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
       {nullptr, kTrcMatrix<uint16_t, uint16_t>}}}},
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
       {nullptr, kLabToGray<uint16_t, uint16_t>}}}},
    {kKindLabToXyz, Use::kInChains, false, only16(exported<icConvertLabToXyz>)},
    {kKindXyzToLab, Use::kInChains, false, only16(exported<icConvertXYZToLab>)},
    {kKindTableStage, Use::kInChains, false, only16(convertThroughTables)},
    {kKindAbsolute, Use::kInChains, false,
     only16(kernel<WhiteScaling, uint16_t, uint16_t, scaleWhite>)},
    {kKindPerceptualToRelative, Use::kInChains, false,
     only16(kernel<icBlackWhite_t, uint16_t, uint16_t, squeezeIntoDevice>)},
    {kKindRelativeToPerceptual, Use::kInChains, false,
     only16(kernel<icBlackWhite_t, uint16_t, uint16_t, stretchFromDevice>)},
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
            curves,
            in == Depth::k8 ? 1 : 2,
            out == Depth::k8 ? 1 : 2};
}

/// Whether no slice of a run touches what another reads: the two sides are apart, or the same
/// memory with pixels of one size.
bool slicesAreApart(const uint8_t* source, ptrdiff_t inBytes, const uint8_t* destination,
                    ptrdiff_t outBytes, int pixels) {
    const std::less_equal<const uint8_t*> before;
    return before(source + inBytes * pixels, destination) ||
           before(destination + outBytes * pixels, source) ||
           (source == destination && inBytes == outBytes);
}

}  // namespace

void BoundKernel::operator()(const void* source, void* destination, int pixels) const {
    const auto* const in = static_cast<const uint8_t*>(source);
    auto* const out = static_cast<uint8_t*>(destination);
    const ptrdiff_t inBytes = ptrdiff_t{inSamples} * inSampleBytes;
    const ptrdiff_t outBytes = ptrdiff_t{outSamples} * outSampleBytes;
    const int64_t threads = threadsForPixels(pixels, hardwareThreads());
    if (threads == 1 || perLine || !slicesAreApart(in, inBytes, out, outBytes, pixels)) {
        run(state, source, destination, pixels, curves);
        return;
    }
    fanOutWithCaller(pixels, threads, [&](int64_t, int64_t first, int64_t count) {
        const auto offset = static_cast<ptrdiff_t>(first);
        run(state, in + offset * inBytes, out + offset * outBytes, static_cast<int>(count), curves);
    });
}

BoundKernel chooseKernel(const icXformInternal& xform, Depth in, Depth out) {
    return bind(xform, in, out, Use::kAnywhere, {});
}

BoundKernel chooseStageKernel(const icXformInternal& xform, CurveMask curves) {
    return bind(xform, Depth::k16, Depth::k16, Use::kInChains, curves);
}

}  // namespace lumoxa
