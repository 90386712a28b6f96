// SPDX-License-Identifier: Apache-2.0
#include "inspect/profile_id.h"

#include <algorithm>
#include <vector>

namespace lumoxa::inspection {

std::optional<Md5Digest> storedProfileId(const ProfileFile& file) {
    if (!file.hasHeader()) return std::nullopt;
    Md5Digest id;
    std::copy_n(file.bytes().begin() + header_at::kProfileId, id.size(), id.begin());
    if (id == Md5Digest{}) return std::nullopt;
    return id;
}

Md5Digest computedProfileId(const ProfileFile& file) {
    struct Field {
        uint64_t at, size;
    };
    static constexpr Field kZeroed[] = {
        {header_at::kFlags, 4}, {header_at::kIntent, 4}, {header_at::kProfileId, 16}};
    const ByteView whole = file.bytes();
    const ByteView head = whole.part(0, kHeaderBytes);
    std::vector<uint8_t> header(head.begin(), head.end());
    for (const Field& field : kZeroed) {
        for (uint64_t at = field.at; at < std::min<uint64_t>(field.at + field.size, header.size());
             ++at)
            header[at] = 0;
    }
    Md5 md5;
    md5.add(header);
    const ByteView rest = whole.part(kHeaderBytes, whole.size());
    md5.add({rest.begin(), static_cast<size_t>(rest.size())});
    return md5.finish();
}

}  // namespace lumoxa::inspection
