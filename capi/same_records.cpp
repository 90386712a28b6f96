// SPDX-License-Identifier: Apache-2.0
//
// Constants and records that the C and the C++ interface share, compared while compiling. Nothing
// of this file reaches the library.
#include <cstddef>

#include "lumoxa/lmx.h"
#include "lumoxa/lumoxa.h"

static_assert(sizeof(void*) == 8 && sizeof(size_t) == sizeof(uint64_t),
              "the layout of records with pointers is that of 64-bit machines");

static_assert(LMX_SUCCESS == icSuccess && LMX_ERR_INVALID == icErrInvalid);
static_assert(LMX_ERR_TAG_TYPE == icErrTagType && LMX_ERR_TEXT_TYPE == icErrTextType);
static_assert(LMX_ERR_XFORM_KIND == icErrXformKind && LMX_ERR_BUFFER_SIZE == icErrBufferSize);
static_assert(LMX_ERR_OPEN == icErrOpen && LMX_ERR_READ == icErrRead);
static_assert(LMX_ERR_WRITE == icErrWrite && LMX_ERR_NO_MEMORY == icErrNoMemory);
static_assert(LMX_ERR_NO_TAG == icErrNoTag && LMX_ERR_NULL_DATA == icErrNullData);
static_assert(LMX_ERR_PROFILES_DIFFER == icErrProfilesDiffer);

static_assert(LMX_PERCEPTUAL == icPerceptual && LMX_SATURATION == icSaturation);
static_assert(LMX_RELATIVE_COLORIMETRIC == icRelativeColorimetric);
static_assert(LMX_ABSOLUTE_COLORIMETRIC == icAbsoluteColorimetric);
static_assert(LMX_DEVICE_TO_PCS == icDeviceToPcs && LMX_PCS_TO_DEVICE == icPcsToDevice);
static_assert(LMX_GAMUT_TEST == icGamutTest && LMX_COMBINED == icCombined);
static_assert(LMX_COMBINE_COLORIMETRIC == icCombineColorimetric);
static_assert(LMX_COMBINE_KEEP_PAPER_WHITE == icCombineKeepPaperWhite);
static_assert(LMX_SAMPLES_8 == icSamples8 && LMX_SAMPLES_16 == icSamples16);
static_assert(LMX_PROGRESS_START == icIterStart && LMX_PROGRESS_STEP == icIterProgress);
static_assert(LMX_PROGRESS_END == icIterEnd);

// A field of a record here stands where its namesake there does, and is as wide.
#define SAME_FIELD(ours, field, theirs, name)                        \
    static_assert(offsetof(ours, field) == offsetof(theirs, name) && \
                  sizeof(ours::field) == sizeof(theirs::name))

static_assert(sizeof(lmx_transform_info) == 28 && sizeof(icXformDesc_t) == 28);
SAME_FIELD(lmx_transform_info, kind, icXformDesc_t, kind);
SAME_FIELD(lmx_transform_info, intent, icXformDesc_t, intent);
SAME_FIELD(lmx_transform_info, direction, icXformDesc_t, transType);
SAME_FIELD(lmx_transform_info, in_space, icXformDesc_t, inSpace);
SAME_FIELD(lmx_transform_info, out_space, icXformDesc_t, outSpace);
SAME_FIELD(lmx_transform_info, in_channels, icXformDesc_t, inChannels);
SAME_FIELD(lmx_transform_info, out_channels, icXformDesc_t, outChannels);

static_assert(sizeof(lmx_pixel_layout) == 288 && sizeof(icPixelLayout_t) == 288);
SAME_FIELD(lmx_pixel_layout, data_type, icPixelLayout_t, dataType);
SAME_FIELD(lmx_pixel_layout, contiguous, icPixelLayout_t, contiguous);
SAME_FIELD(lmx_pixel_layout, pixel_count, icPixelLayout_t, pixelCount);
SAME_FIELD(lmx_pixel_layout, line_count, icPixelLayout_t, lineCount);
SAME_FIELD(lmx_pixel_layout, pixel_step, icPixelLayout_t, pixelStep);
SAME_FIELD(lmx_pixel_layout, line_step, icPixelLayout_t, lineStep);
SAME_FIELD(lmx_pixel_layout, channel_count, icPixelLayout_t, channelCount);
SAME_FIELD(lmx_pixel_layout, channel_data, icPixelLayout_t, channelData);

static_assert(sizeof(lmx_header) == 128 && sizeof(icHeader) == 128);
SAME_FIELD(lmx_header, size, icHeader, size);
SAME_FIELD(lmx_header, cmm, icHeader, cmmId);
SAME_FIELD(lmx_header, version, icHeader, version);
SAME_FIELD(lmx_header, device_class, icHeader, deviceClass);
SAME_FIELD(lmx_header, color_space, icHeader, colorSpace);
SAME_FIELD(lmx_header, pcs, icHeader, pcs);
SAME_FIELD(lmx_header, year, icHeader, date.year);
SAME_FIELD(lmx_header, month, icHeader, date.month);
SAME_FIELD(lmx_header, day, icHeader, date.day);
SAME_FIELD(lmx_header, hours, icHeader, date.hours);
SAME_FIELD(lmx_header, minutes, icHeader, date.minutes);
SAME_FIELD(lmx_header, seconds, icHeader, date.seconds);
SAME_FIELD(lmx_header, magic, icHeader, magic);
SAME_FIELD(lmx_header, platform, icHeader, platform);
SAME_FIELD(lmx_header, flags, icHeader, flags);
SAME_FIELD(lmx_header, manufacturer, icHeader, manufacturer);
SAME_FIELD(lmx_header, model, icHeader, model);
SAME_FIELD(lmx_header, attributes, icHeader, attributes);
SAME_FIELD(lmx_header, rendering_intent, icHeader, renderingIntent);
SAME_FIELD(lmx_header, illuminant, icHeader, illuminant);
SAME_FIELD(lmx_header, creator, icHeader, creator);
SAME_FIELD(lmx_header, reserved, icHeader, reserved);
