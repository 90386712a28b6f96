// SPDX-License-Identifier: Apache-2.0
#include "tools/file_bytes.h"

#include <filesystem>
#include <fstream>

#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

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

}  // namespace lumoxa_tool
