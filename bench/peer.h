// SPDX-License-Identifier: Apache-2.0
//
// The same jobs through Little CMS, called as any program calls it: relative colorimetric, no black
// point compensation.
#pragma once

#include <functional>
#include <memory>

#include "bench/conversions.h"

namespace lumoxa_bench {

enum class PeerMode {
    Default,     ///< as most programs call it: the chain is first reduced to a grid or to tables
    Unoptimized  ///< the stages themselves, pixel by pixel
};

/// A ready conversion of packed pixels.
using PeerConvert = std::function<void(const void* source, void* destination, uint32_t pixels)>;

/// From profile images to a ready conversion; a single link is completed with the identity profile
/// of the connection space. Empty in a build without the library, or where it has no such
/// conversion.
PeerConvert makePeer(const Conversion& conversion, int inBits, int outBits, PeerMode mode);

/// From two profile images to a ready conversion of 8-, 16-bit or floating-point (32) pixels, with
/// black point compensation.
PeerConvert makeCompensatingPeer(const Bytes& from, const Bytes& to, int bits);

/// Between the connection spaces themselves, 16 bits.
PeerConvert makePeerLabToXyz();
PeerConvert makePeerXyzToLab();

/// Opens a profile and closes it; false in a build without the library.
bool peerLoads(const Bytes& image);

}  // namespace lumoxa_bench
