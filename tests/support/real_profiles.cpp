// SPDX-License-Identifier: Apache-2.0
#include "tests/support/real_profiles.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

namespace lumoxa_test {
namespace fs = std::filesystem;

std::vector<std::string> realProfilePaths() {
    std::set<std::string> paths;
    for (const char* root : {"/usr/share/color/icc", "/usr/share/ghostscript"}) {
        std::error_code failed;
        for (fs::recursive_directory_iterator it(root, failed), end; !failed && it != end;
             it.increment(failed)) {
            std::string extension = it->path().extension().string();
            std::transform(extension.begin(), extension.end(), extension.begin(),
                           [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
            std::error_code broken;
            if ((extension == ".icc" || extension == ".icm") && it->is_regular_file(broken)) {
                paths.insert(fs::canonical(it->path()).string());
            }
        }
    }
    return {paths.begin(), paths.end()};
}

std::vector<uint8_t> fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

}  // namespace lumoxa_test
