// SPDX-License-Identifier: Apache-2.0
//
// A conversion as a device-link profile.
#pragma once

#include <vector>

#include "convert/conversion.h"

namespace lumoxa::engine {

/// Bits of the numbers in a link's table.
enum class LinkPrecision { k8, k16 };

/// A profile of class 'link', version 2.4, with every tag that the class requires; 'pseq' lists the
/// profiles of the chain. Its table is the conversion's own; a conversion without one is tabulated.
///
/// @throws FaultError also for a connection space at an end, and for inputs that no table of 2^22
///         nodes serves
std::vector<uint8_t> makeLink(const ConversionRequest& request, LinkPrecision precision);

}  // namespace lumoxa::engine
