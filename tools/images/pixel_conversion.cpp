// SPDX-License-Identifier: Apache-2.0
#include "tools/images/pixel_conversion.h"

#include <new>

#include "tools/interrupt.h"

namespace lumoxa_tool {
namespace {

// The part of a region that is to be converted, of which the view has the first `channels` bands.
lumoxa::ImageView viewOf(VipsRegion* region, const VipsRect& area, int channels, int bands,
                         bool sixteenBits) {
    lumoxa::ImageView view;
    view.data = VIPS_REGION_ADDR(region, area.left, area.top);
    view.sample = sixteenBits ? lumoxa::Sample::U16 : lumoxa::Sample::U8;
    view.width = area.width;
    view.height = area.height;
    view.channels = channels;
    view.channelStride = sixteenBits ? 2 : 1;
    view.pixelStride = view.channelStride * bands;
    view.rowStride = static_cast<int64_t>(VIPS_REGION_LSKIP(region));
    return view;
}

// libvips calls this on each of its threads, which share the conversion.
int generate(VipsRegion* out, void* sequence, void*, void* planMemory, gboolean*) {
    auto* const in = static_cast<VipsRegion*>(sequence);
    const auto& plan = *static_cast<const PixelPlan*>(planMemory);
    const VipsRect& area = out->valid;
    if (interrupted() || vips_region_prepare(in, &area) != 0) return -1;
    const int inputs = plan.conversion->inputChannels() + plan.extras;
    const int outputs = plan.conversion->outputChannels() + plan.extras;
    lumoxa::Conversion::Run run;
    run.threads = 1;
    try {
        plan.conversion->run(viewOf(in, area, inputs, plan.sourceBands, plan.sourceSixteenBits),
                             viewOf(out, area, outputs, outputs, plan.targetSixteenBits), run);
        return 0;
    } catch (const std::exception& error) {
        vips_error("lumoxa", "%s", error.what());
    }
    return -1;
}

}  // namespace

ImageHandle convertPixels(VipsImage* source, const PixelPlan& plan,
                          VipsInterpretation interpretation) {
    ImageHandle target(vips_image_new());
    // Strips of several lines: as many pixels a call as memory that doesn't grow with the image
    // allows.
    if (vips_image_pipelinev(target.get(), VIPS_DEMAND_STYLE_FATSTRIP, source, nullptr) != 0) {
        return nullptr;
    }
    target->Bands = plan.conversion->outputChannels() + plan.extras;
    target->BandFmt = plan.targetSixteenBits ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR;
    target->Type = interpretation;
    const int code = vips_image_generate(target.get(), vips_start_one, generate, vips_stop_one,
                                         source, const_cast<PixelPlan*>(&plan));
    return code == 0 ? std::move(target) : nullptr;
}

}  // namespace lumoxa_tool
