// SPDX-License-Identifier: Apache-2.0
//
// The record behind a profile handle.
#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>
#include <vector>

#include "base/c_heap.h"
#include "lumoxa/types.h"
#include "profile/signatures.h"

namespace lumoxa {

/// Where the bytes of a profile's tags live. Any other non-zero value is the address of the buffer
/// that the profile was loaded from, kept only as a mark.
enum TagStorage : uintptr_t {
    kTagsInFile = 0,  // locations are offsets into the file behind `stream`
    kTagsLoaded = 1,  // loaded whole from a file
    kTagsCreated = 2  // made by icProfileCreate
};

/// The bytes of a whole profile, shared by all that read them.
using ProfileImage = std::shared_ptr<const std::vector<uint8_t>>;

}  // namespace lumoxa

/// A profile is valid exactly when its header's magic is 'acsp'. When `tagStorage` is not
/// kTagsInFile, every location in the table is the address of a C-heap copy of the tag's bytes, in
/// file byte order, that the record owns.
struct icProfileInternal {
    uintptr_t callerId;  // never written
    FILE* stream;
    uintptr_t tagStorage;
    icHeader header;
    icTagList_safe64bit* tagList;
    lumoxa::ProfileImage* image;  // what it was loaded from, while nothing is edited; or null
};

namespace lumoxa {

struct ProfileRelease {
    void operator()(icProfileInternal* profile) const noexcept;
};
using ProfilePtr = std::unique_ptr<icProfileInternal, ProfileRelease>;

/// The record behind a handle, or null when the handle is null or not a profile.
inline const icProfileInternal* validProfile(icProfile_t profile) {
    return profile != nullptr && profile->header.magic == kMagic ? profile : nullptr;
}

/// A copy of one tag's bytes: type signature in host order, body as in the file.
struct TagCopy {
    CHeapPtr<icTagBase> bytes;
    uint32_t size = 0;
    icTagTypeSignature type() const { return bytes->sig; }
    const uint8_t* data() const { return reinterpret_cast<const uint8_t*>(bytes.get()); }
    uint8_t* data() { return reinterpret_cast<uint8_t*>(bytes.get()); }
};

/// Keeps the bytes that a profile was loaded from. Throws std::bad_alloc.
void keepImage(icProfileInternal& profile, ProfileImage image);

/// To be called with every change: what the profile was loaded from is no longer what it is.
void forgetImage(icProfileInternal& profile) noexcept;

/// The bytes of a profile: those it was loaded from, else those that saving would write. Throws
/// FaultError, std::bad_alloc.
ProfileImage imageOf(const icProfileInternal& profile);

/// Whether the tag table lists `signature`.
bool hasTag(const icProfileInternal& profile, icTagSignature signature);

/// Reads the first tag of that signature from wherever the profile keeps its tags. icErrNoTag when
/// there is none, icErrRead when it is shorter than a type signature with its reserved bytes or
/// than `minimumSize`, or the reader's code; `out` is then empty.
int readTag(const icProfileInternal& profile, icTagSignature signature, TagCopy& out,
            uint32_t minimumSize = sizeof(icTagBase));

}  // namespace lumoxa
