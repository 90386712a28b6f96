// SPDX-License-Identifier: Apache-2.0
#include "tools/profile_writer.h"

#include <filesystem>
#include <fstream>
#include <new>

#include "lumoxa/tags.h"
#include "tools/interrupt.h"
#include "tools/output_file.h"
#include "tools/profile_handle.h"
#include "tools/result_text.h"
#include "tools/signatures.h"
#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kCheckDisk = "check the disk and the room on it";

// A copy, because saving uses a handle up.
ProfileHandle copyOf(icProfile_t profile) {
    icProfile_t copy = nullptr;
    const int code = icProfileCopy(profile, &copy);
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess) throw InputError("profile " + faultText(code), "get a sound copy");
    return ProfileHandle(copy);
}

// The library ends a file with its last tag, up to three bytes before the size that the header
// states; other software takes such a file for cut off.
void padToStatedSize(const std::string& file, const std::string& path) {
    uint8_t stated[4] = {};
    std::ifstream saved(file, std::ios::binary);
    if (!saved.read(reinterpret_cast<char*>(stated), sizeof stated)) {
        throw InputError(path + ": can't be read back", kCheckDisk);
    }
    std::error_code error;
    const auto size = fs::file_size(file, error);
    if (!error && size < bigEndian32(stated)) fs::resize_file(file, bigEndian32(stated), error);
    if (error) throw InputError(path + ": " + error.message(), kCheckDisk);
}

}  // namespace

void saveProfile(icProfile_t profile, const std::string& path) {
    if (path.empty()) throw UsageError("-o: needs the name of a file");
    const ProfileHandle copy = copyOf(profile);
    watchForInterrupt();
    OutputFile file(path);
    const int code = icProfileSaveProfile(copy.get(), file.temporaryName().c_str());
    throwIfInterrupted();
    if (code == icErrNoMemory) throw std::bad_alloc();
    if (code != icSuccess) throw InputError(path + ": " + faultText(code), kCheckDisk);
    padToStatedSize(file.temporaryName(), path);
    file.commit();
}

}  // namespace lumoxa_tool
