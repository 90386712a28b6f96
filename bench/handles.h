// SPDX-License-Identifier: Apache-2.0
//
// Owners of library handles, and the two ways of making a transform that every benchmark uses.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"

namespace lumoxa_bench {

using Bytes = std::vector<uint8_t>;

struct HandleRelease {
    void operator()(icProfile_t profile) const { icProfileFree(profile); }
    void operator()(icXform_t xform) const { icXformFree(xform); }
};
using Profile = std::unique_ptr<const icProfileInternal, HandleRelease>;
using Xform = std::unique_ptr<const icXformInternal, HandleRelease>;

/// A benchmark of a call that failed would measure nothing.
inline void check(int code, const char* what) {
    if (code != 0) throw std::runtime_error(std::string(what) + " gives " + std::to_string(code));
}

inline Profile loadProfile(const Bytes& image) {
    icProfile_t profile = nullptr;
    check(icProfileLoadFromBuffer(nullptr, image.data(), image.size(), &profile), "load");
    return Profile(profile);
}

inline Xform getXform(const Profile& profile, icTransType direction) {
    icXform_t xform = nullptr;
    check(icXformGet(profile.get(), icRelativeColorimetric, direction, &xform), "icXformGet");
    return Xform(xform);
}

/// Without black lift, as the other library converts.
inline Xform combine(const std::vector<icXform_t>& chain) {
    icXform_t xform = nullptr;
    check(icCombineXforms(static_cast<int>(chain.size()), chain.data(), &xform,
                          icCombineColorimetric, nullptr, nullptr, nullptr, 0),
          "icCombineXforms");
    return Xform(xform);
}

}  // namespace lumoxa_bench
