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
    explicit TempFile(const std::vector<uint8_t>& bytes) : path_(freshPath()) {
        std::ofstream file(path_, std::ios::binary);
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
        EXPECT_TRUE(file.good()) << path_;
    }
    ~TempFile() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;

    std::string path() const { return path_.string(); }

  private:
    // Test processes run side by side, so the name is random.
    static std::filesystem::path freshPath() {
        const std::string name = std::to_string(std::random_device{}());
        return std::filesystem::temp_directory_path() / ("lumoxa-" + name + ".icc");
    }

    std::filesystem::path path_;
};

}  // namespace lumoxa_test
