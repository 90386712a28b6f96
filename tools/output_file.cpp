// SPDX-License-Identifier: Apache-2.0
#include "tools/output_file.h"

#include <random>
#include <string>
#include <system_error>

#include "tools/tool_error.h"

namespace lumoxa_tool {
namespace {

namespace fs = std::filesystem;

// A name that nobody else uses: two runs may write to one folder at once.
std::string uniqueStem() {
    static constexpr char kDigits[] = "0123456789abcdef";
    std::random_device random;
    std::string stem = ".lumoxa-";
    for (int i = 0; i < 16; ++i)
        stem += kDigits[random() % 16];
    return stem;
}

}  // namespace

OutputFile::OutputFile(const fs::path& target) : target_(target) {
    std::error_code error;
    if (fs::is_symlink(fs::symlink_status(target_, error))) {
        // Renaming over a link would leave its file as it was: write where it leads.
        const fs::path resolved = fs::weakly_canonical(target_, error);
        if (!error) target_ = resolved;
    }
    if (fs::exists(target_, error) && !fs::is_regular_file(target_, error)) {
        throw InputError(target.string() + ": is not a regular file; give a file name to write to");
    }
    const fs::path folder = target_.has_parent_path() ? target_.parent_path() : fs::path(".");
    if (!fs::is_directory(folder, error)) {
        throw InputError(target.string() + ": its folder does not exist; create it first");
    }
    temporary_ = folder / (uniqueStem() + target_.extension().string());
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void OutputFile::commit() {
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) {
        throw InputError(target_.string() + ": can't be replaced (" + error.message() +
                         "); check its permissions");
    }
    temporary_.clear();
}

}  // namespace lumoxa_tool
