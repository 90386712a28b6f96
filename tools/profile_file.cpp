// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_file.h"

#include <algorithm>

#include "tools/signatures.h"

namespace lumoxa_tool {

ProfileFile::ProfileFile(ByteView bytes) : bytes_(bytes) {
    if (bytes.size() < kTableAt || !isProfile()) return;
    const uint64_t room = (bytes.size() - kTableAt) / kEntryBytes;
    const uint64_t count = std::min(declaredTags(), room);
    entries_.reserve(count);
    for (uint64_t i = 0; i < count; ++i) {
        const uint64_t at = kTableAt + i * kEntryBytes;
        entries_.push_back({bytes.u32(at), bytes.u32(at + 4), bytes.u32(at + 8), at});
    }
}

bool ProfileFile::isProfile() const {
    return bytes_.u32(header_at::kMagic) == fourCc("acsp") ||
           deviceClassName(deviceClass()) != nullptr;
}

const TagEntry* ProfileFile::find(uint32_t signature) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [=](const TagEntry& entry) {
        return entry.signature == signature;
    });
    return found == entries_.end() ? nullptr : &*found;
}

const char* deviceClassName(uint32_t deviceClass) {
    struct ClassName {
        uint32_t deviceClass;
        const char* name;
    };
    static constexpr ClassName kNames[] = {
        {fourCc("scnr"), "input device"},  {fourCc("mntr"), "display"},
        {fourCc("prtr"), "output device"}, {fourCc("link"), "device link"},
        {fourCc("spac"), "colour space"},  {fourCc("abst"), "abstract"},
        {fourCc("nmcl"), "named colours"},
    };
    for (const ClassName& entry : kNames) {
        if (entry.deviceClass == deviceClass) return entry.name;
    }
    return nullptr;
}

}  // namespace lumoxa_tool
