// SPDX-License-Identifier: Apache-2.0
#include "inspect/profile_file.h"

#include <algorithm>

#include "inspect/words.h"

namespace lumoxa::inspection {

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
    return bytes_.u32(header_at::kMagicAt) == kMagic || deviceClassName(deviceClass()) != nullptr;
}

const TagEntry* ProfileFile::find(uint32_t signature) const {
    const auto found = std::find_if(entries_.begin(), entries_.end(), [=](const TagEntry& entry) {
        return entry.signature == signature;
    });
    return found == entries_.end() ? nullptr : &*found;
}

}  // namespace lumoxa::inspection
