// SPDX-License-Identifier: Apache-2.0
#include "tests/support/real_profiles.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

namespace lumoxa_test {
namespace fs = std::filesystem;

// Wine shows the machine's own files on this drive.
#if defined(_WIN32)
const std::string kDrive = "Z:";
#else
const std::string kDrive;
#endif

const std::set<std::string> kExtensions = {".icc", ".icm", ".ICC", ".ICM"};

std::vector<std::string> realProfilePaths() {
    std::set<std::string> paths;
    for (const char* root : {"/usr/share/color/icc", "/usr/share/ghostscript"}) {
        std::error_code failed;
        for (fs::recursive_directory_iterator it(kDrive + root, failed), end; !failed && it != end;
             it.increment(failed)) {
            const bool isProfile = kExtensions.count(it->path().extension().string()) != 0;
            std::error_code broken;
            if (isProfile && it->is_regular_file(broken))
                paths.insert(fs::canonical(it->path()).generic_string());
        }
    }
    return {paths.begin(), paths.end()};
}

std::vector<uint8_t> fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<uint8_t> realProfile(const std::string& pathEnd) {
    for (const std::string& path : realProfilePaths()) {
        const size_t at = path.rfind(pathEnd);
        if (at != std::string::npos && at + pathEnd.size() == path.size()) return fileBytes(path);
    }
    throw std::runtime_error("no profile " + pathEnd +
                             " (packages icc-profiles-free, colord-data, libgs-common)");
}

}  // namespace lumoxa_test
