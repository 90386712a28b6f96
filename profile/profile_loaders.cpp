// SPDX-License-Identifier: Apache-2.0
//
// The ways to make a profile of existing bytes: a file kept open, a file read whole, an image,
// another profile.
//
// Profile bytes are hostile: no offset or size is believed before it has been compared with what is
// there. Only the image without a length is trusted, because there is nothing to compare with.
#include <cstring>
#include <optional>
#include <utility>

#include "base/entry_guard.h"
#include "lumoxa/profile.h"
#include "lumoxa/tags.h"
#include "profile/header_reader.h"
#include "profile/profile_object.h"
#include "profile/stream_position.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

ProfilePtr newRecord() {
    return ProfilePtr(requireZeroed<icProfileInternal>(sizeof(icProfileInternal)).release());
}

// A file-backed profile: stream open, table of offsets.
int openFileBacked(const char* path, ProfilePtr& out) {
    ProfilePtr profile = newRecord();
    profile->stream = icOpenProfile(path);
    if (profile->stream == nullptr) return icErrOpen;
    int code = readProfileHeader(profile->stream, profile->header);
    if (code != icSuccess) return code;
    TagListPtr list;
    code = readTagTable(profile->stream, list);
    if (code != icSuccess) return code;
    profile->tagList = list.release();
    out = std::move(profile);
    return icSuccess;
}

// Moves the tags one by one from a table of offsets into the profile, whose own table lists only
// tags that it owns. At any moment, and so on any failure, it is a whole profile that can be
// released like every other.
class TagAdopter {
  public:
    TagAdopter(icProfileInternal& profile, uintptr_t storage, uint32_t count) : profile_(profile) {
        profile.tagList = makeTagList(count).release();
        profile.tagList->count = 0;
        profile.tagStorage = storage;
    }
    void adopt(const icTag_safe64bit& entry, CHeapPtr<uint8_t> bytes) {
        icTag_safe64bit* tags = profile_.tagList->tags;
        tags[profile_.tagList->count++] = {entry.signature, tagLocation(bytes.release()),
                                           entry.size};
    }

  private:
    icProfileInternal& profile_;
};

// Reads all tags of a table of offsets from a file into a profile.
int readTags(FILE* stream, icTagList_safe64bit& offsets, icProfileInternal& profile) {
    const std::optional<uint64_t> length = streamLength(stream);
    if (length && !tagsFit(offsets, *length)) return icErrRead;
    TagAdopter tags(profile, kTagsLoaded, static_cast<uint32_t>(offsets.count));
    for (const icTag_safe64bit& entry : entriesOf(offsets)) {
        CHeapPtr<uint8_t> bytes;
        const int code = readFileBytes(stream, static_cast<int64_t>(entry.location), entry.size,
                                       entry.size, bytes);
        if (code != icSuccess) return code;
        tags.adopt(entry, std::move(bytes));
    }
    return icSuccess;
}

// Reads all tags of a file-backed profile and closes its file.
int loadTags(icProfileInternal& profile) {
    const TagListPtr offsets(std::exchange(profile.tagList, nullptr));
    const int code = readTags(profile.stream, *offsets, profile);
    if (code == icSuccess) std::fclose(std::exchange(profile.stream, nullptr));
    return code;
}

// Copies tags that another profile holds in memory.
void copyMemoryTags(icTagList_safe64bit& list, icProfileInternal& profile) {
    TagAdopter tags(profile, kTagsLoaded, static_cast<uint32_t>(list.count));
    for (const icTag_safe64bit& entry : entriesOf(list)) {
        auto bytes = requireZeroed<uint8_t>(entry.size);
        std::memcpy(bytes.get(), tagAddress(entry), entry.size);
        tags.adopt(entry, std::move(bytes));
    }
}

// Copies all tags out of an image.
int copyTags(const uint8_t* image, uint64_t length, icProfileInternal& profile) {
    uint32_t count = 0;
    const int code = readTagCount(image, length, count);
    if (code != icSuccess) return code;
    const TagListPtr offsets = readTagEntries(image, count);
    if (!tagsFit(*offsets, length)) return icErrRead;
    TagAdopter tags(profile, reinterpret_cast<uintptr_t>(image), count);
    for (const icTag_safe64bit& entry : entriesOf(*offsets)) {
        auto bytes = allocateZeroed<uint8_t>(entry.size);
        if (bytes == nullptr) return icErrNoMemory;
        if (entry.size != 0) std::memcpy(bytes.get(), image + entry.location, entry.size);
        tags.adopt(entry, std::move(bytes));
    }
    return icSuccess;
}

int loadImage(const void* image, uint64_t length, icProfile_t* out) {
    if (out != nullptr) *out = nullptr;
    if (image == nullptr) return icErrNullData;
    if (out == nullptr) return icErrInvalid;
    return guarded([&] {
        ProfilePtr profile = newRecord();
        if (length < kHeaderSize) return icErrRead;
        profile->header = headerOf(image);
        if (profile->header.magic != kMagic) return icErrInvalid;
        const int code = copyTags(static_cast<const uint8_t*>(image), length, *profile);
        // Callers of the trusting form get what could be copied when memory ran out.
        const bool partial = code == icErrNoMemory && length == kTrustedLength && profile->tagList;
        if (code == icSuccess || partial) *out = profile.release();
        return code;
    });
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

FILE* icOpenProfile(const char* path) {
    return path == nullptr ? nullptr : std::fopen(path, "rb");
}

void icCloseProfile(FILE* stream) {
    if (stream != nullptr) std::fclose(stream);
}

int icLoadProfile(const char* path, icProfile_t* profile) {
    if (profile == nullptr) return icErrInvalid;
    *profile = nullptr;
    if (path == nullptr) return icErrInvalid;
    return guarded([&] {
        ProfilePtr opened;
        const int code = openFileBacked(path, opened);
        *profile = opened.release();
        return code;
    });
}

int icProfileLoadProfile(icCallerId_t, const char* path, icFileProps_t*, icProfile_t* profile) {
    if (profile == nullptr) return icErrInvalid;
    *profile = nullptr;
    if (path == nullptr) return icErrInvalid;
    return guarded([&] {
        ProfilePtr loaded;
        int code = openFileBacked(path, loaded);
        if (code == icSuccess) code = loadTags(*loaded);
        if (code == icSuccess) *profile = loaded.release();
        return code;
    });
}

int icProfileLoadFromBuffer(icCallerId_t, const void* image, icProfile_t* profile) {
    return loadImage(image, kTrustedLength, profile);
}

int icProfileLoadFromBuffer(icCallerId_t, const void* image, size_t length, icProfile_t* profile) {
    return loadImage(image, length, profile);
}

int icProfileCopy(icProfile_t profile, icProfile_t* copy) {
    if (copy == nullptr) return icErrInvalid;
    *copy = nullptr;
    const icProfileInternal* original = validProfile(profile);
    if (original == nullptr) return icErrInvalid;
    return guarded([&] {
        ProfilePtr made = newRecord();
        made->header = original->header;
        if (original->tagStorage != kTagsInFile) {
            copyMemoryTags(*original->tagList, *made);
        } else if (const int code = readTags(original->stream, *original->tagList, *made)) {
            return code;
        }
        *copy = made.release();
        return icSuccess;
    });
}
