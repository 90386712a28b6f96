// SPDX-License-Identifier: Apache-2.0
//
// The lightest and the darkest colour of a device, shared by the transform that they were found
// with and by the stages that map between them.
#pragma once

#include <cstdint>

namespace lumoxa {

/// Both in the 16-bit Lab encoding. Immutable but for the count, which like that of a transform is
/// a plain integer: holders come and go on one thread at a time.
struct icBlackWhite_t {
    int32_t refCount;
    uint16_t white[3];
    uint16_t black[3];
};

inline icBlackWhite_t* shareBlackWhite(icBlackWhite_t* shared) {
    if (shared != nullptr) ++shared->refCount;
    return shared;
}

/// Drops a holder; the last one releases it. Null does nothing.
inline void dropBlackWhite(icBlackWhite_t* shared) {
    if (shared != nullptr && --shared->refCount < 1) delete shared;
}

}  // namespace lumoxa
