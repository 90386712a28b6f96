// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of the content of a tag, by its type.
#pragma once

#include <string>

#include "inspect/profile_file.h"
#include "inspect/violation_list.h"
#include "inspect/words.h"

namespace lumoxa::inspection {

// One tag under examination; positions are within the tag.
struct Examined {
    const ProfileFile& file;
    const TagEntry& entry;
    ByteView data;
    ViolationList& list;

    uint32_t type() const { return data.u32(0); }
    void add(uint64_t at, const std::string& rule, const std::string& found) const {
        list.add(signatureText(entry.signature), entry.offset + at, rule, clauseOfType(type()),
                 found);
    }
    void addMinor(uint64_t at, const std::string& rule, const std::string& found) const {
        list.addMinor(signatureText(entry.signature), entry.offset + at, rule, clauseOfType(type()),
                      found);
    }
    void addUnless(bool kept, uint64_t at, const std::string& rule,
                   const std::string& found) const {
        if (!kept) add(at, rule, found);
    }
};

void checkTagContent(const ProfileFile& file, const TagEntry& entry, ViolationList& list);

/// The part on lut8, lut16, lutAtoB and lutBtoA tags.
void checkLut(const Examined& tag);

}  // namespace lumoxa::inspection
