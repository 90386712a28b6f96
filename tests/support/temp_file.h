// SPDX-License-Identifier: Apache-2.0
//
// A file of given bytes that lives as long as the object.
#pragma once

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace lumoxa_test {

class TempFile {
  public:
    explicit TempFile(const std::vector<uint8_t>& bytes,
                      const std::filesystem::path& ending = ".icc")
        : path_(freshPath(ending)) {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        EXPECT_TRUE(file.good()) << path_;
    }
    ~TempFile() {
        std::error_code failed;
        std::filesystem::permissions(path_, std::filesystem::perms::owner_all, failed);
        std::filesystem::remove(path_, failed);
        if (failed) leftovers_.paths.push_back(path_);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    std::string path() const { return path_.string(); }
    const std::filesystem::path& nativePath() const { return path_; }

  private:
    // Windows doesn't remove a file that a profile still holds open; at the end of the program none
    // does.
    struct Leftovers {
        std::vector<std::filesystem::path> paths;
        ~Leftovers() {
            std::error_code ignored;
            for (const auto& path : paths)
                std::filesystem::remove(path, ignored);
        }
    };
    static inline Leftovers leftovers_;

    // Test processes run side by side, so the name is random.
    static std::filesystem::path freshPath(const std::filesystem::path& ending) {
        const std::string name = "lumoxa-" + std::to_string(std::random_device{}());
        return std::filesystem::temp_directory_path() / (std::filesystem::path(name) += ending);
    }

    std::filesystem::path path_;
};

}  // namespace lumoxa_test
