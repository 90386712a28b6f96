// SPDX-License-Identifier: Apache-2.0
//
// Paper white: the white of a chain that ends in a printer is left unprinted.
//
// A chain that maps white to nearly no ink would cover bare paper with a faint, uneven tint. Where
// its answer for white is within 2 % of paper white in every channel, the output tables are bent so
// that white comes out exact: the correction is whole at the white and fades to nothing at the
// other end of each table.
#pragma once

#include "combine/chain.h"
#include "combine/lut16.h"

namespace lumoxa {

/// Adjusts the output tables of a filled lut. Does nothing for absolute colorimetry (where the tint
/// is wanted), for a chain that does not end in a printer, for spaces whose white is not known, for
/// tables of fewer than 17 entries, and where the chain's white is farther off.
void adjustPaperWhite(const ExpandedChain& chain, const Lut16View& lut);

}  // namespace lumoxa
