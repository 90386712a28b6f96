// SPDX-License-Identifier: Apache-2.0
#include "tools/files.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <memory>
#include <random>
#include <string>
#include <system_error>

#include "tools/interrupt.h"
#include "tools/tool_error.h"

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace lumoxa_tool {
namespace {

namespace fs = std::filesystem;
using Stream = std::unique_ptr<FILE, int (*)(FILE*)>;

// A name that nobody else uses: two runs may write to one folder at once.
std::string uniqueStem() {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::random_device random;
    std::string stem = ".lumoxa-";
    for (int i = 0; i < 16; ++i)
        stem += kDigits[random() % 16];
    return stem;
}

// Where a chain of symbolic links leads, be it to a file that doesn't exist yet: renaming over a
// link would leave the file behind it as it was.
fs::path followLinks(const fs::path& path) {
    constexpr int kMostLinks = 40;  // as many as Linux follows
    fs::path at = path;
    std::error_code error;
    for (int i = 0; i < kMostLinks; ++i) {
        if (!fs::is_symlink(fs::symlink_status(at, error))) return at;
        const fs::path link = fs::read_symlink(at, error);
        if (error) throw InputError(path.string() + ": " + error.message(), "check the link");
        at = at.parent_path() / link;  // an absolute link replaces the folder
    }
    throw InputError(path.string() + ": leads from link to link without end", "mend the link");
}

// Root may write to any file: what nobody may write to is protected from it as well.
bool writeProtected(const fs::path& path, fs::perms permissions) {
    constexpr fs::perms kAnyWriter =
        fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    return (permissions & kAnyWriter) == fs::perms::none || !std::ofstream(path, std::ios::app);
}

// Waits until the file's bytes are on the disk. Without it, a crash soon after the rename could
// leave an empty file where the old one was; and some disks say only now that they are full.
bool syncToDisk(const fs::path& path) {
#if defined(_WIN32)
    const Stream file(_wfopen(path.c_str(), L"r+b"), &std::fclose);
    return file && _commit(_fileno(file.get())) == 0;
#else
    const Stream file(std::fopen(path.c_str(), "r+b"), &std::fclose);
    if (!file) return false;
    // EINVAL: a file system that has no such notion
    return fsync(fileno(file.get())) == 0 || errno == EINVAL;
#endif
}

[[noreturn]] void refuseDisk(const fs::path& target) {
    const std::string reason = std::generic_category().message(errno);
    throw InputError(target.string() + ": can't be written whole (" + reason + ")",
                     "check the disk and the room on it");
}

// Sizes in a profile are 32-bit; real ones end at some ten megabytes. The limit keeps a device file
// or a disc image given by mistake from filling the memory.
constexpr size_t kMaxBytes = size_t{512} << 20;

}  // namespace

std::vector<uint8_t> readFile(const std::string& path, const std::string& kind) {
    if (std::error_code ignored; std::filesystem::is_directory(pathOf(path), ignored)) {
        throw InputError(path + ": is a directory; give a " + kind + " file");
    }
    std::ifstream file(pathOf(path), std::ios::binary);
    if (!file) {
        throw InputError(path + ": " + kind +
                         " can't be opened; check the path and its permissions");
    }
    std::vector<uint8_t> bytes;
    char block[1 << 16];
    while (file.read(block, sizeof block), file.gcount() > 0) {
        bytes.insert(bytes.end(), block, block + file.gcount());
        if (bytes.size() > kMaxBytes) {
            throw InputError(path + ": is over 512 MiB", "give a " + kind + " file");
        }
    }
    return bytes;
}

OutputFile::OutputFile(const fs::path& target) : target_(followLinks(target)) {
    std::error_code error;
    const fs::file_status status = fs::status(target_, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        throw InputError(target.string() + ": is not a regular file", "give a file to write to");
    }
    if (fs::exists(status) && writeProtected(target_, status.permissions())) {
        throw InputError(target.string() + ": is write-protected",
                         "change its permissions or choose another name");
    }
    const fs::path folder = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error)) {
        throw InputError(target.string() + ": its folder does not exist", "create it first");
    }
    temporary_ = folder / (uniqueStem() + target.extension().string());
    if (!std::ofstream(temporary_)) {
        const std::string reason = std::generic_category().message(errno);
        throw InputError(target.string() + ": can't be created (" + reason + ")",
                         "check the permissions of its folder");
    }
    // Nobody sees more of a file that is being replaced than of the old one.
    if (fs::exists(status)) {
        fs::permissions(temporary_, fs::perms::owner_read | fs::perms::owner_write, error);
    }
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void OutputFile::commit() {
    if (!syncToDisk(temporary_)) refuseDisk(target_);
    std::error_code error;
    const fs::file_status old = fs::status(target_, error);
    if (fs::exists(old)) fs::permissions(temporary_, old.permissions(), error);
    fs::rename(temporary_, target_, error);
    if (error) {
        throw InputError(target_.string() + ": can't be replaced (" + error.message() + ")",
                         "check its permissions");
    }
    temporary_.clear();
}

void writeFile(const std::string& path, const std::vector<uint8_t>& bytes) {
    if (path.empty()) throw UsageError("-o: needs the name of a file");
    watchForInterrupt();
    OutputFile file(pathOf(path));
    std::ofstream out(file.temporary(), std::ios::binary);
    out.write(reinterpret_cast<const char*>(bytes.data()),
              static_cast<std::streamsize>(bytes.size()));
    out.close();
    throwIfInterrupted();
    if (!out) refuseDisk(pathOf(path));
    file.commit();
}

}  // namespace lumoxa_tool
