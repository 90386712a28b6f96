// SPDX-License-Identifier: Apache-2.0
//
// Writing a profile to a file.
#include "profile/profile_writer.h"

#include <utility>

#include "base/byte_order.h"
#include "base/entry_guard.h"
#include "lumoxa/tags.h"
#include "profile/header_reader.h"
#include "profile/stream_position.h"
#include "profile/tag_edit.h"
#include "profile/tag_reader.h"
#include "profile/tag_table.h"

namespace lumoxa {
namespace {

/// A file being written; whatever fails, its owner learns when it closes the file.
class OutputStream {
  public:
    explicit OutputStream(const char* path) : stream_(std::fopen(path, "wb")) {}
    ~OutputStream() {
        if (stream_ != nullptr) std::fclose(stream_);
    }
    OutputStream(const OutputStream&) = delete;
    OutputStream& operator=(const OutputStream&) = delete;

    bool isOpen() const { return stream_ != nullptr; }

    bool write(uint64_t at, const void* bytes, size_t size) {
        return seekFromStart(stream_, static_cast<int64_t>(at)) &&
               std::fwrite(bytes, 1, size, stream_) == size;
    }

    /// False when what was buffered could not be written: a full disk may show only here. Flushed
    /// by itself, since not every C runtime's fclose tells that its last write failed.
    bool close() {
        const bool flushed = std::fflush(stream_) == 0;
        return std::fclose(std::exchange(stream_, nullptr)) == 0 && flushed;
    }

  private:
    FILE* stream_;
};

int save(icProfileInternal& profile, const char* path) {
    OutputStream file(path);
    if (!file.isOpen()) return icErrWrite;
    icHeader header = {};
    const bool written = writeProfile(profile.header, *profile.tagList, file, header);
    if (!file.close() || !written) return icErrWrite;
    // The handle keeps the header as it was written, in file byte order, and so is no profile any
    // more: what is to be used on is saved as a copy.
    profile.header = header;
    forgetImage(profile);
    return icSuccess;
}

}  // namespace
}  // namespace lumoxa

using namespace lumoxa;

int icProfileSaveProfile(icProfile_t handle, const char* path) {
    icProfileInternal* profile = editableProfile(handle);
    if (profile == nullptr || path == nullptr) return icErrInvalid;
    return guarded([&] { return save(*profile, path); });
}
