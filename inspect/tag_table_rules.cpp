// SPDX-License-Identifier: Apache-2.0
//
// What ICC.1 demands of the tag table: where tags lie, and that none comes twice.
#include <algorithm>

#include "inspect/icc_rules.h"
#include "inspect/words.h"

namespace lumoxa::inspection {
namespace {

constexpr Clause kStructureClause = {"6.2", "7.1"};
constexpr Clause kSharingClause = {nullptr, "7.3"};  // ICC.1:2001-04 does not say so in words

void checkPlace(const ProfileFile& file, const TagEntry& entry, ViolationList& list) {
    const std::string name = signatureText(entry.signature);
    const uint64_t size = file.bytes().size();
    const uint64_t offsetAt = entry.at + 4;
    if (entry.end() > size) {
        list.add(name, offsetAt, "a tag ends within the file", kTagTableClause,
                 "this one ends at byte " + std::to_string(entry.end()) + " and the file at " +
                     std::to_string(size));
    }
    if (entry.offset % 4 != 0) {
        list.add(name, offsetAt, "a tag starts at a multiple of four", kStructureClause,
                 "this one starts at byte " + std::to_string(entry.offset));
    }
    const uint64_t tableEnd = kTableAt + file.declaredTags() * kEntryBytes;
    if (entry.offset < tableEnd) {
        list.add(name, offsetAt, "a tag lies after header and tag table", kTagTableClause,
                 "this one starts at byte " + std::to_string(entry.offset) +
                     " and the table ends at " + std::to_string(tableEnd));
    }
}

void checkDuplicates(std::vector<TagEntry> entries, ViolationList& list) {
    std::sort(entries.begin(), entries.end(), [](const TagEntry& a, const TagEntry& b) {
        return a.signature != b.signature ? a.signature < b.signature : a.at < b.at;
    });
    for (size_t i = 1; i < entries.size(); ++i) {
        if (entries[i].signature != entries[i - 1].signature) continue;
        list.add(signatureText(entries[i].signature), entries[i].at,
                 "a signature comes once in the tag table", kTagTableClause,
                 "this one comes again");
    }
}

// In file order, a tag overlaps an earlier one when it starts before the furthest end of those
// ahead.
void checkOverlaps(std::vector<TagEntry> entries, ViolationList& list) {
    std::sort(entries.begin(), entries.end(), [](const TagEntry& a, const TagEntry& b) {
        return a.offset != b.offset ? a.offset < b.offset
               : a.size != b.size   ? a.size < b.size
                                    : a.at < b.at;
    });
    const TagEntry* furthest = nullptr;
    const TagEntry* previous = nullptr;
    for (const TagEntry& entry : entries) {
        if (entry.size == 0) continue;
        const bool shared =
            previous != nullptr && entry.offset == previous->offset && entry.size == previous->size;
        previous = &entry;
        if (shared) continue;
        if (furthest != nullptr && entry.offset < furthest->end()) {
            list.add(signatureText(entry.signature), entry.offset,
                     "tags share all their bytes or none", kSharingClause,
                     "this one shares some of " + quoted(furthest->signature));
        }
        if (furthest == nullptr || entry.end() > furthest->end()) furthest = &entry;
    }
}

}  // namespace

void checkTagTable(const ProfileFile& file, ViolationList& list) {
    if (!file.hasHeader()) return;
    const uint64_t tableEnd = kTableAt + file.declaredTags() * kEntryBytes;
    if (file.bytes().size() < kTableAt || tableEnd > file.bytes().size()) {
        list.add("", kTagCountAt, "the tag table lies within the file", kTagTableClause,
                 std::to_string(file.declaredTags()) + " tags make it end at byte " +
                     std::to_string(tableEnd));
    }
    for (const TagEntry& entry : file.entries())
        checkPlace(file, entry, list);
    checkDuplicates(file.entries(), list);
    checkOverlaps(file.entries(), list);
}

}  // namespace lumoxa::inspection
