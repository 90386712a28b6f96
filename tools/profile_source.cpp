// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_source.h"

#include <algorithm>
#include <new>

#include "tools/profile_text.h"
#include "tools/signatures.h"

namespace lumoxa_tool {

Profile::Profile(ProfileContent content)
    : name_(content.name),
      profile_(loadProfile(content).profile),
      bytes_(std::move(content.bytes)) {
    icProfileGetHeader(handle(), &header_);

    // The loader has checked the table and every tag against the bytes, so the readers that take
    // an image without a length are safe from here on.
    icTagList_safe64bit* list = nullptr;
    if (icReadTagTable(bytes_.data(), &list) != icSuccess) throw std::bad_alloc();
    const std::unique_ptr<icTagList_safe64bit, BlockFree> owner(list);
    tags_.assign(list->tags, list->tags + list->count);
}

ProfileHandle Profile::loadForEditing() const {
    icProfile_t profile = nullptr;
    const int code = icProfileLoadFromBuffer(nullptr, bytes_.data(), bytes_.size(), &profile);
    if (code != icSuccess) throw std::bad_alloc();  // the bytes have been loaded before
    return ProfileHandle(profile);
}

bool Profile::hasTag(uint32_t signature) const {
    return std::any_of(tags_.begin(), tags_.end(),
                       [=](const icTag_safe64bit& entry) { return entry.signature == signature; });
}

std::optional<Tag> Profile::tag(uint32_t signature) const {
    for (const icTag_safe64bit& entry : tags_) {
        if (entry.signature != signature) continue;
        const uint8_t* first = bytes_.data() + entry.location;
        const uint32_t type = entry.size >= sizeof(icTagBase) ? bigEndian32(first) : 0;
        return Tag{type, {first, first + entry.size}};
    }
    return std::nullopt;
}

std::string Profile::description() const {
    const std::optional<Tag> tag = this->tag(kProfileDescriptionTag);
    const std::string text = tag ? tagText(*tag) : std::string();
    return text.empty() ? name_ : text;
}

}  // namespace lumoxa_tool
