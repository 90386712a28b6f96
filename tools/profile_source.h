// SPDX-License-Identifier: Apache-2.0
//
// Profiles as the tool holds them: the bytes, the library's handle and a name for messages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"
#include "tools/named_profile.h"
#include "tools/profile_handle.h"

namespace lumoxa_tool {

/// One tag's bytes, in file byte order throughout.
struct Tag {
    uint32_t type = 0;
    std::vector<uint8_t> bytes;
};

/// A profile that has been loaded and checked: every tag lies within `bytes`.
class Profile {
  public:
    /// @throws InputError for bytes that are no profile
    explicit Profile(ProfileContent content);

    icProfile_t handle() const { return profile_.handle(); }
    /// A new handle of bytes() as they are, to edit and save.
    ProfileHandle loadForEditing() const;
    const std::string& name() const { return name_; }
    const std::vector<uint8_t>& bytes() const { return bytes_; }
    const icHeader& header() const { return header_; }
    uint32_t space() const { return header_.colorSpace; }

    /// The profile's own name, or name() when it has none.
    std::string description() const;

    /// All entries of the tag table, locations being offsets into bytes().
    const std::vector<icTag_safe64bit>& tags() const { return tags_; }
    bool hasTag(uint32_t signature) const;
    std::optional<Tag> tag(uint32_t signature) const;

  private:
    std::string name_;
    lumoxa::Profile profile_;
    std::vector<uint8_t> bytes_;
    icHeader header_ = {};
    std::vector<icTag_safe64bit> tags_;
};

}  // namespace lumoxa_tool
