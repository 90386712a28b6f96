// SPDX-License-Identifier: Apache-2.0
//
// From the tags of a profile to stages: tone curves, and the LUT tags of all four types, complete
// and as ICC.1:2010 defines them (10.5 curves, 10.16 parametric ones, 10.8 and 10.9 lut16
// and lut8, 10.10 and 10.11 lutAToB and lutBToA).
#pragma once

#include <cstdint>

#include "convert/profile_view.h"
#include "convert/stages.h"

namespace lumoxa::engine {

/// The curve in a 'curv' or 'para' tag, or in such an element of another tag.
///
/// @param at    where it begins in the tag
/// @param size  optional; receives its bytes
/// @throws FaultError
CurvePtr readCurve(const TagReader& tag, uint64_t at = 0, uint64_t* size = nullptr);

/// The three numbers of an XYZ tag.
/// @throws FaultError
std::array<double, 3> readXyz(const TagReader& tag);

/// The stages of a LUT tag, between colours as stages have them.
///
/// @param inSpace, outSpace  colour spaces on either side; Lab and XYZ are decoded and encoded by
/// the
///                           tag's type: lut16 has the 16-bit Lab of version 2, all others that of
///                           version 4
/// @throws FaultError also for channels that contradict the colour spaces
StageList lutStages(const TagReader& tag, uint32_t inSpace, uint32_t outSpace,
                    const std::string& origin);

/// From numbers 0..1, as the samples of a tag or a picture, to a colour as stages have it; nothing
/// for device colours. `legacyLab`: the 16-bit Lab of version 2, L* 100 = 65280.
Affine decoding(uint32_t space, bool legacyLab);

}  // namespace lumoxa::engine
