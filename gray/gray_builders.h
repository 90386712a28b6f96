// SPDX-License-Identifier: Apache-2.0
//
// From a profile with the gray tag to the state of a gray transform.
#pragma once

#include "gray/gray_tag.h"
#include "gray/out_tables.h"
#include "gray/pre_luts.h"

namespace lumoxa {

/// What a gray transform is to do beyond its direction.
struct GrayRequest {
    ToneRequest tone;
    const float* toneCurve = nullptr;  // out tables: in place of the shaping where not null
    bool shaped = true;
    float shapingParameter = 0.0f;
};

/// Builds the state with the tables of one direction. Codes of readGrayTag(). Throws
/// std::bad_alloc.
int buildGrayState(const icProfileInternal& profile, icTransType direction,
                   icRenderingIntent intent, const GrayRequest& request, GrayStatePtr& out);

}  // namespace lumoxa
