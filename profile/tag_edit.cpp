// SPDX-License-Identifier: Apache-2.0
#include "profile/tag_edit.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "lumoxa/profile.h"
#include "lumoxa/tags.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

// Appends an empty entry. The old table stays in place when memory runs out.
icTag_safe64bit& appendEntry(icProfileInternal& profile) {
    const auto count = static_cast<uint32_t>(profile.tagList->count);
    if (count >= kMaxTagCount) throw std::bad_alloc();
    TagListPtr grown = makeTagList(count + 1);
    std::copy_n(static_cast<icTag_safe64bit*>(profile.tagList->tags), count,
                static_cast<icTag_safe64bit*>(grown->tags));
    std::free(std::exchange(profile.tagList, grown.release()));
    return entriesOf(*profile.tagList).back();
}

CHeapPtr<uint8_t> copyOf(const void* bytes, uint32_t size) {
    auto copy = requireZeroed<uint8_t>(size);
    if (size != 0) std::memcpy(copy.get(), bytes, size);
    return copy;
}

// Reads a tag from wherever the profile keeps it, as long as the entry says.
int readAnyTag(const icProfileInternal& profile, const icTag_safe64bit& entry, icTagBase** out) {
    return profile.tagStorage == kTagsInFile
               ? icReadTag(profile.stream, &entry, out)
               : icReadTag(static_cast<const void*>(nullptr), &entry, out);
}

}  // namespace

icProfileInternal* editableProfile(icProfile_t profile) {
    const icProfileInternal* valid = validProfile(profile);
    return valid != nullptr && valid->tagStorage != kTagsInFile
               ? const_cast<icProfileInternal*>(valid)
               : nullptr;
}

void storeTag(icProfileInternal& profile, icTagSignature signature, CHeapPtr<uint8_t> bytes,
              uint32_t size, uint32_t entryGrowth) {
    forgetImage(profile);
    icTag_safe64bit* entry = findTag(profile.tagList, signature);
    if (entry == nullptr) {
        entry = &appendEntry(profile);
        profile.header.size += entryGrowth;
    }
    std::free(tagAddress(*entry));
    profile.header.size += size - entry->size;
    *entry = {signature, tagLocation(bytes.release()), size};
}

}  // namespace lumoxa

using namespace lumoxa;

int icTagGetById(icProfile_t handle, icTagSignature signature, icTagValue_t* value) {
    const icProfileInternal* profile = validProfile(handle);
    if (profile == nullptr || value == nullptr) return icErrInvalid;
    const icTag_safe64bit* entry = findTag(profile->tagList, signature);
    if (entry == nullptr) return icErrNoTag;
    icTagBase* copy = nullptr;
    const int code = readAnyTag(*profile, *entry, &copy);
    value->data = copy;
    if (code != icSuccess) return code;
    value->signature = signature;
    value->type = copy->sig;
    value->size = entry->size;
    return icSuccess;
}

int icTagFree(icTagValue_t* value) {
    if (value != nullptr) std::free(std::exchange(value->data, nullptr));
    return icSuccess;
}

int icTagSet(icProfile_t handle, const icTagValue_t* value) {
    icProfileInternal* profile = editableProfile(handle);
    if (profile == nullptr || value == nullptr || value->size < sizeof(icTagTypeSignature)) {
        return icErrInvalid;
    }
    if (value->data == nullptr) return icErrNullData;
    return guarded([&] {
        auto bytes = copyOf(value->data, value->size);
        swapInPlace<icTagTypeSignature>(bytes.get(), 1);
        storeTag(*profile, value->signature, std::move(bytes), value->size);
        return icSuccess;
    });
}

int icTagAdd(icProfile_t handle, icTagSignature signature, unsigned int size, const void* bytes) {
    icProfileInternal* profile = editableProfile(handle);
    if (profile == nullptr) return icErrInvalid;
    if (bytes == nullptr && size != 0) return icErrNullData;
    return guarded([&] {
        storeTag(*profile, signature, copyOf(bytes, size), size);
        return icSuccess;
    });
}

int icTagRemove(icProfile_t handle, icTagSignature signature) {
    icProfileInternal* profile = editableProfile(handle);
    if (profile == nullptr) return icErrInvalid;
    icTag_safe64bit* entry = findTag(profile->tagList, signature);
    if (entry == nullptr) return icErrNoTag;
    forgetImage(*profile);
    profile->header.size -= kEntryGrowth + entry->size;
    std::free(tagAddress(*entry));
    const auto entries = entriesOf(*profile->tagList);
    std::copy(entry + 1, entries.data() + entries.size(), entry);
    --profile->tagList->count;
    return icSuccess;
}
