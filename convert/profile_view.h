// SPDX-License-Identifier: Apache-2.0
//
// A profile as the engine reads it: the bytes of the whole file, with a name and a place in the
// chain for messages. Tags are spans of those bytes, so that a fault knows where in the file it
// stands.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "base/fault.h"
#include "profile/profile_object.h"

namespace lumoxa::engine {

/// 'A2B0' of 0x41324230, quotes included; what is not printable becomes '?'.
std::string quoted(uint32_t signature);

/// A colour space as messages name it: "RGB", "CMYK", "6-colour".
std::string spaceName(uint32_t space);

/// Channels of a colour space (ICC.1:2010, 7.2.6); 0 for one that it doesn't list.
int channelsOf(uint32_t space);

/// Where a profile stands that is in no list of the caller's, instead of a place in it.
inline constexpr int kOutsideOfChains = -1;
inline constexpr int kProofProfile = -2;

class ProfileView;

/// The bytes of one tag, in file byte order.
class TagReader {
  public:
    TagReader(const ProfileView& profile, uint32_t signature, uint32_t offset, uint32_t size)
        : profile_(&profile), signature_(signature), offset_(offset), size_(size) {}

    uint32_t signature() const { return signature_; }
    uint32_t size() const { return size_; }
    uint32_t type() const { return u32(0); }
    std::span<const uint8_t> bytes() const;

    // Numbers at a byte position of the tag; a position outside it is a fault.
    uint32_t u8(uint64_t at) const { return need(at, 1)[0]; }
    uint32_t u16(uint64_t at) const;
    uint32_t u32(uint64_t at) const;
    /// A s15Fixed16 number.
    double fixed(uint64_t at) const;
    /// The first of `size` bytes at `at`, all of them inside the tag.
    const uint8_t* need(uint64_t at, uint64_t size) const;

    /// @param at  byte position in the tag, -1 for the tag as a whole
    [[noreturn]] void fail(int code, int64_t at, const std::string& rule) const;

  private:
    const ProfileView* profile_;
    uint32_t signature_;
    uint32_t offset_;
    uint32_t size_;
};

/// Immutable once made. Tags refer to it: it stays where it is while they are in use.
class ProfileView {
  public:
    /// @param index  for messages: place in the caller's list, or one of the two constants above
    /// @throws FaultError for bytes that hold no header or a tag table that doesn't fit them
    ProfileView(ProfileImage image, int index);
    ProfileView(const ProfileView&) = delete;
    ProfileView& operator=(const ProfileView&) = delete;

    const icHeader& header() const { return header_; }
    bool version4() const { return header_.version >= 0x04000000; }
    bool has(uint32_t signature) const;
    size_t tagCount() const { return entries_.size(); }
    /// The first tag of that signature.
    std::optional<TagReader> find(uint32_t signature) const;
    /// The same, where it must be there: a fault otherwise.
    TagReader require(uint32_t signature) const;
    const std::vector<uint8_t>& bytes() const { return *image_; }
    const ProfileImage& image() const { return image_; }

    /// `profile 2`, or `the proof profile`.
    std::string title() const;
    /// `profile 2 "Coated press"`, as messages name it.
    const std::string& name() const { return name_; }
    const std::string& description() const { return description_; }

    /// The media white relative to D50, 1 each where the tag is absent or not positive. For version
    /// 2 display profiles it is D50 too (mediaWhitePointTag of ICC.1:2010, as for version 4
    /// displays).
    struct MediaWhite {
        double ratio[3] = {1, 1, 1};
        bool replaced = false;  ///< a version 2 display's tag says something else
    };
    MediaWhite mediaWhite() const;

    [[noreturn]] void fail(int code, uint32_t tag, int64_t offset, const std::string& rule) const;

  private:
    struct Entry {
        uint32_t signature, offset, size;
    };
    void readTable();

    ProfileImage image_;
    icHeader header_ = {};
    std::vector<Entry> entries_;
    std::string description_;
    std::string name_;
    int index_;
};

}  // namespace lumoxa::engine
