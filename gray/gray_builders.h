// SPDX-License-Identifier: Apache-2.0
//
// From a profile with the private gray tag 'wzgd', XYZ of patches of a three-channel device
// (docs/gray.md), to the state of a gray transform.
#pragma once

#include "gray/gray_tables.h"
#include "profile/profile_object.h"

namespace lumoxa {

/// What a gray transform is to do beyond its direction.
struct GrayRequest {
    ToneRequest tone;
    const float* toneCurve = nullptr;  // out tables: in place of the shaping where not null
    bool shaped = true;
    float shapingParameter = 0.0f;
};

/// Builds the state with the tables of one direction. A tag reader's codes; icErrRead for a tag
/// that is shorter than it declares; icErrTagType for one that declares what no device has: N below
/// 2, no steps, an unknown layout, a paper that reflects nothing. Throws std::bad_alloc.
int buildGrayState(const icProfileInternal& profile, icTransType direction,
                   icRenderingIntent intent, const GrayRequest& request, GrayStatePtr& out);

}  // namespace lumoxa
