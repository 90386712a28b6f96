// SPDX-License-Identifier: Apache-2.0
//
// A whole profile out of tags that were made here.
#pragma once

#include <cstdint>
#include <vector>

#include "lumoxa/types.h"
#include "profile/signatures.h"
#include "profile/tag_bytes.h"

namespace lumoxa {

inline constexpr uint32_t kVersion2 = 0x02400000;  ///< 2.4
inline constexpr uint32_t kVersion4 = 0x04300000;  ///< 4.3

/// The copyright of profiles whose maker states none.
inline constexpr const char* kFreeCopyright = "No copyright, use freely";

struct NewTag {
    uint32_t signature;
    TagBytes bytes;  ///< whole tag in file byte order
};

/// Numbers in host order; fields of the header that aren't here are 0, as is the profile ID, which
/// ICC.1:2010, 7.2.18 allows.
struct NewProfile {
    uint32_t version = kVersion4;
    uint32_t deviceClass = kClassDisplay;
    uint32_t space = kSpaceRgb;
    uint32_t pcs = kSpaceXyz;
    uint32_t platform = 0;
    uint32_t intent = 0;
    icDateTimeNumber created = {};
    std::vector<NewTag> tags;
};

/// The bytes of the profile: header, table and tags in their order, on 4-byte boundaries. Tags with
/// the same data share it. @throws FaultError for more than a profile's 4 GiB
std::vector<uint8_t> profileBytes(const NewProfile& profile);

/// Now, as headers state the time of creation: in UTC (ICC.1:2010, 4.2).
icDateTimeNumber utcNow();

}  // namespace lumoxa
