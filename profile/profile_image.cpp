// SPDX-License-Identifier: Apache-2.0
//
// The bytes of a whole profile. Who reads tags from them knows where in the file each byte stands.
#include <algorithm>
#include <utility>

#include "base/fault.h"
#include "lumoxa/tags.h"
#include "profile/profile_object.h"
#include "profile/profile_writer.h"

namespace lumoxa {
namespace {

/// A profile being written to memory.
class ImageSink {
  public:
    bool write(uint64_t at, const void* bytes, size_t size) {
        const auto start = static_cast<size_t>(at);
        if (image_.size() < start + size) image_.resize(start + size);
        std::copy_n(static_cast<const uint8_t*>(bytes), size, image_.begin() + at_(start));
        return true;
    }
    std::vector<uint8_t> take(uint64_t size) {
        image_.resize(static_cast<size_t>(size));  // the last tag's padding
        return std::move(image_);
    }

  private:
    static ptrdiff_t at_(size_t position) { return static_cast<ptrdiff_t>(position); }

    std::vector<uint8_t> image_;
};

ProfileImage written(const icProfileInternal& profile) {
    ImageSink sink;
    icHeader header = {};
    if (profile.tagList == nullptr ||
        !writeProfile(profile.header, *profile.tagList, sink, header)) {
        throw FaultError(icErrWrite, "the profile's tags take more than 4 GiB");
    }
    swapHeader(header);
    return std::make_shared<const std::vector<uint8_t>>(sink.take(header.size));
}

}  // namespace

void keepImage(icProfileInternal& profile, ProfileImage image) {
    forgetImage(profile);
    profile.image = new ProfileImage(std::move(image));
}

void forgetImage(icProfileInternal& profile) noexcept {
    delete std::exchange(profile.image, nullptr);
}

ProfileImage imageOf(const icProfileInternal& profile) {
    if (profile.image != nullptr) return *profile.image;
    if (profile.tagStorage != kTagsInFile) return written(profile);
    icProfile_t copy = nullptr;
    const int code = icProfileCopy(&profile, &copy);
    const ProfilePtr owner(const_cast<icProfileInternal*>(copy));
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess) throw FaultError(code, "the profile's file can't be read whole");
    return written(*copy);
}

}  // namespace lumoxa
