// SPDX-License-Identifier: Apache-2.0
//
// Byte comparison of a profile file with an image.
#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include "base/entry_guard.h"
#include "lumoxa/profile.h"
#include "profile/header_reader.h"
#include "profile/signatures.h"

namespace lumoxa {
namespace {

// Large enough that reading is not slowed by calls, small against any profile worth comparing.
constexpr size_t kChunkBytes = size_t{64} * 1024;

struct StreamClose {
    void operator()(FILE* stream) const noexcept { std::fclose(stream); }
};

// Compares in chunks: the size in a header is no reason to allocate that much.
int compareBytes(FILE* stream, const uint8_t* image, size_t size) {
    std::vector<uint8_t> chunk(std::min(size, kChunkBytes));
    std::rewind(stream);
    for (size_t done = 0; done < size;) {
        const size_t wanted = std::min(size - done, kChunkBytes);
        const size_t got = std::fread(chunk.data(), 1, wanted, stream);
        if (std::memcmp(chunk.data(), image + done, got) != 0) return icErrProfilesDiffer;
        if (got != wanted) return icErrRead;
        done += wanted;
    }
    return icSuccess;
}

int compare(const char* path, const void* image) {
    const icHeader imageHeader = headerOf(image);
    if (imageHeader.magic != kMagic) return icErrInvalid;
    const std::unique_ptr<FILE, StreamClose> stream(icOpenProfile(path));
    if (stream == nullptr) return icErrOpen;
    icHeader fileHeader;
    const int code = readProfileHeader(stream.get(), fileHeader);
    if (code != icSuccess) return code;
    if (fileHeader.size != imageHeader.size) return icErrProfilesDiffer;
    return compareBytes(stream.get(), static_cast<const uint8_t*>(image), imageHeader.size);
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icCompareProfiles(const char* path, const void* image) {
    if (image == nullptr) return icErrNullData;
    if (path == nullptr) return icErrInvalid;
    return guarded([&] { return compare(path, image); });
}
