// SPDX-License-Identifier: Apache-2.0
//
// Profiles as the tool holds them: the bytes, the library's handle and a name for messages.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "lumoxa/lumoxa.h"
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
    /// @param word  path of a profile, or "sRGB" for the built-in one
    static Profile open(const std::string& word);

    /// @param name    how messages call the profile
    /// @param bytes   the whole profile; trailing bytes are allowed
    /// @param remedy  what to do when it can't serve, if that is not what helps with a file
    Profile(std::string name, std::vector<uint8_t> bytes, std::string remedy = {});

    /// For transforms: its parametric tone curves are sampled, unlike those of bytes() and tags.
    icProfile_t handle() const { return handle_.get(); }
    /// A new handle of bytes() as they are, to edit and save.
    ProfileHandle loadForEditing() const;
    const std::string& name() const { return name_; }
    const std::vector<uint8_t>& bytes() const { return bytes_; }
    const icHeader& header() const { return header_; }
    uint32_t space() const { return header_.colorSpace; }

    /// Whether what helps with a file helps with this profile.
    bool isFile() const { return remedy_.empty(); }

    /// This profile's own remedy, else the one that helps with a file.
    std::string remedy(const std::string& forFile) const { return isFile() ? forFile : remedy_; }

    /// The profile's own name, or name() when it has none.
    std::string description() const;

    /// All entries of the tag table, locations being offsets into bytes().
    const std::vector<icTag_safe64bit>& tags() const { return tags_; }
    bool hasTag(uint32_t signature) const;
    std::optional<Tag> tag(uint32_t signature) const;

  private:
    void loadForTransforms(const std::vector<uint8_t>& bytes);

    std::string name_;
    std::vector<uint8_t> bytes_;
    std::string remedy_;
    ProfileHandle handle_;
    icHeader header_ = {};
    std::vector<icTag_safe64bit> tags_;
};

}  // namespace lumoxa_tool
