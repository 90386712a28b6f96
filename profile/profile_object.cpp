// SPDX-License-Identifier: Apache-2.0
#include "profile/profile_object.h"

#include <algorithm>
#include <cstring>
#include <ctime>
#include <string_view>
#include <utility>

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "lumoxa/profile.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

constexpr std::string_view kCopyright = "Copyright Vantorell Software";

// A text tag is its type, four reserved bytes and a NUL-terminated text; three zeros more bring it
// to a multiple of four.
constexpr uint32_t kCopyrightTagSize = static_cast<uint32_t>(kCopyright.size()) + 12;

// The D50 white of the connection space, 0.9642, 1, 0.8249 in s15Fixed16 (ICC.1:2010, 7.2.16).
constexpr icXYZNumber kD50Fixed = {63190, 65536, 54061};

// Size that a new header states until the first save works it out: 16 bytes more than the 184 of
// header, table and tag.
constexpr uint32_t kNewProfileSize = kCopyrightTagSize + 160;

icDateTimeNumber localTimeNow() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
#if defined(_WIN32)
    localtime_s(&local, &now);
#else
    localtime_r(&now, &local);
#endif
    const auto part = [](int value) { return static_cast<uint16_t>(value); };
    return {part(local.tm_year + 1900), part(local.tm_mon + 1), part(local.tm_mday),
            part(local.tm_hour),        part(local.tm_min),     part(local.tm_sec)};
}

icHeader newHeader() {
    icHeader header = {};
    header.size = kNewProfileSize;
    header.version = 0x02000000;
    header.deviceClass = kClassDisplay;
    header.colorSpace = kSpaceRgb;
    header.pcs = kSpaceXyz;
    header.date = localTimeNow();
    header.magic = kMagic;
    header.platform = fourcc("MSFT");
    header.illuminant = kD50Fixed;
    return header;
}

CHeapPtr<uint8_t> copyrightTag() {
    auto tag = requireZeroed<uint8_t>(kCopyrightTagSize);
    storeRaw(tag.get(), fromFileOrder(kTypeText));
    std::memcpy(tag.get() + sizeof(icTagBase), kCopyright.data(), kCopyright.size());
    return tag;
}

}  // namespace

void ProfileRelease::operator()(icProfileInternal* profile) const noexcept {
    if (profile->tagStorage != kTagsInFile && profile->tagList != nullptr) {
        for (const icTag_safe64bit& entry : entriesOf(*profile->tagList)) {
            std::free(tagAddress(entry));
        }
    }
    std::free(profile->tagList);
    if (profile->stream != nullptr) std::fclose(profile->stream);
    delete profile->image;
    std::free(profile);
}

bool hasTag(const icProfileInternal& profile, icTagSignature signature) {
    return findTag(profile.tagList, signature) != nullptr;
}

int readTag(const icProfileInternal& profile, icTagSignature signature, TagCopy& out,
            uint32_t minimumSize) {
    out = {};
    const icTag_safe64bit* entry = findTag(profile.tagList, signature);
    if (entry == nullptr) return icErrNoTag;
    if (entry->size < std::max<uint32_t>(minimumSize, sizeof(icTagBase))) return icErrRead;
    if (profile.tagStorage != kTagsInFile) {
        out.bytes = copyTag(tagAddress(*entry), entry->size);
    } else if (const int code = readFileTag(profile.stream, *entry, out.bytes); code != icSuccess) {
        return code;
    }
    out.size = entry->size;
    return icSuccess;
}

}  // namespace lumoxa

using namespace lumoxa;

int icProfileCreate(icCallerId_t*, icProfile_t* profile) {
    if (profile == nullptr) return icErrInvalid;
    *profile = nullptr;
    return guarded([&] {
        ProfilePtr made(requireZeroed<icProfileInternal>(sizeof(icProfileInternal)).release());
        made->header = newHeader();
        made->tagStorage = kTagsCreated;
        made->tagList = makeTagList(1).release();
        made->tagList->tags[0] = {fourcc("cprt"), tagLocation(copyrightTag().release()),
                                  kCopyrightTagSize};
        *profile = made.release();
        return icSuccess;
    });
}

void icProfileFree(icProfile_t profile) {
    ProfilePtr(const_cast<icProfileInternal*>(profile)).reset();
}

int icProfileGetHeader(icProfile_t profile, icHeader* out) {
    if (out == nullptr || validProfile(profile) == nullptr) return icErrInvalid;
    *out = profile->header;
    return icSuccess;
}

int icProfileSetHeader(icProfile_t profile, const icHeader* header) {
    if (profile == nullptr || header == nullptr || header->magic != kMagic) {
        return icErrInvalid;
    }
    auto& record = *const_cast<icProfileInternal*>(profile);
    record.header = *header;
    forgetImage(record);
    return icSuccess;
}
