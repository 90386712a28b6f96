// SPDX-License-Identifier: Apache-2.0
//
// The record behind a profile handle.
#pragma once

#include <cstdio>
#include <memory>

#include "lumoxa/types.h"
#include "profile/c_heap.h"
#include "profile/signatures.h"

/// Where the bytes of a profile's tags live. Any other non-zero value is the address of the buffer
/// that the profile was loaded from, kept only as a mark.
enum icTagStorage : uintptr_t {
    icTagsInFile = 0,  // locations are offsets into the file behind `stream`
    icTagsLoaded = 1,  // loaded whole from a file
    icTagsCreated = 2  // made by icProfileCreate
};

/// A profile is valid exactly when its header's magic is 'acsp'. When `tagStorage` is not
/// icTagsInFile, every location in the table is the address of a C-heap copy of the tag's bytes, in
/// file byte order, that the record owns.
struct icProfileInternal {
    uintptr_t callerId;  // never written
    FILE* stream;
    uintptr_t tagStorage;
    icHeader header;
    icTagList_safe64bit* tagList;
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

/// Whether the tag table lists `signature`.
bool hasTag(const icProfileInternal& profile, icTagSignature signature);

/// Reads the first tag of that signature from wherever the profile keeps its tags. icErrNoTag when
/// there is none, icErrRead when it is shorter than a type signature with its reserved bytes or
/// than `minimumSize`, or the reader's code; `out` is then empty.
int readTag(const icProfileInternal& profile, icTagSignature signature, TagCopy& out,
            uint32_t minimumSize = sizeof(icTagBase));

}  // namespace lumoxa
