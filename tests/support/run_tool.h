// SPDX-License-Identifier: Apache-2.0
//
// Runs the command-line tool as a user or a script does, in a folder of its own.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/real_profiles.h"
#include "tests/support/tool_process.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {

/// What a run of the tool came to.
struct Result : ProcessEnd {
    std::string out, err;
};

/// A run, the exit code that it has to end with, and what its complaint has to name.
struct Complaint {
    std::string command;
    int exitCode;
    std::string word;
};

/// The numbers in a text, whatever is between them.
inline Samples numbers(const std::string& text) {
    Samples samples;
    std::istringstream in(text);
    for (int value = 0; in >> value; in.ignore())
        samples.push_back(static_cast<uint16_t>(value));
    return samples;
}

inline std::string letters(const Bytes& bytes, size_t at) {
    return {bytes.begin() + static_cast<long>(at), bytes.begin() + static_cast<long>(at) + 4};
}

inline uint32_t number(const Bytes& bytes, size_t at) {
    return signature(letters(bytes, at));
}

/// The tags of a profile by their names.
using Tags = std::vector<std::pair<std::string, Bytes>>;

inline Tags tagsOf(const Bytes& profile) {
    Tags tags;
    for (size_t at = 132; at < 132 + 12 * size_t{number(profile, 128)}; at += 12) {
        const auto first = profile.begin() + number(profile, at + 4);
        tags.emplace_back(letters(profile, at), Bytes(first, first + number(profile, at + 8)));
    }
    return tags;
}

/// A test with a folder, in which the tool runs and which its file names are relative to.
class ToolRun : public testing::Test {
  protected:
    void SetUp() override {
        // Test processes run side by side, so the name is random.
        folder_ = std::filesystem::temp_directory_path() /
                  ("lumoxa-tool-" + std::to_string(std::random_device{}()));
        ASSERT_TRUE(std::filesystem::create_directory(folder_));
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    Bytes bytes(const std::string& name) const { return fileBytes(path(name)); }
    bool exists(const std::string& name) const { return std::filesystem::exists(path(name)); }
    void save(const std::string& name, const Bytes& bytes) const {
        std::ofstream(path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    }
    void save(const std::string& name, const std::string& text) const {
        save(name, Bytes(text.begin(), text.end()));
    }
    std::string text(const std::string& name) const {
        const Bytes all = bytes(name);
        return {all.begin(), all.end()};
    }
    Bytes tag(const std::string& signature, const std::string& file = "out.icc") const {
        for (const auto& [name, data] : tagsOf(bytes(file))) {
            if (name == signature) return data;
        }
        return {};
    }
    // Files that the tool has not finished.
    int leftovers() const {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder_))
            count += entry.path().filename().string().starts_with(".lumoxa");
        return count;
    }

    // The words of a command are separated by single blanks.
    Process start(const std::string& command, const std::string& input = "") const {
        save("stdin", input);
        std::vector<std::string> words = {LUMOXA_TOOL_PATH};
        std::istringstream in(command);
        for (std::string word; std::getline(in, word, ' ');)
            words.push_back(word);
        return lumoxa_test::start(words, folder_, largestFile_);
    }
    Result finish(Process process) const {
        Result result;
        static_cast<ProcessEnd&>(result) = waitFor(process);
        result.out = text("stdout");
        result.err = text("stderr");
        return result;
    }
    Result run(const std::string& command, const std::string& input = "") const {
        return finish(start(command, input));
    }
    // A run that has to succeed.
    Result done(const std::string& command, const std::string& input = "") const {
        const Result result = run(command, input);
        EXPECT_EQ(result.exitCode, 0) << command << '\n' << result.err;
        return result;
    }
    Samples values(const std::string& options, const std::string& input) const {
        return numbers(done("values " + options, input).out);
    }
    // Each in one line, or none where no word is given.
    void expectComplaints(const std::vector<Complaint>& complaints) const {
        for (const Complaint& c : complaints) {
            const Result result = run(c.command);
            EXPECT_EQ(result.exitCode, c.exitCode) << c.command << '\n' << result.err;
            EXPECT_NE(result.err.find(c.word), std::string::npos) << c.command << '\n'
                                                                  << result.err;
            EXPECT_EQ(std::count(result.err.begin(), result.err.end(), '\n'), !c.word.empty())
                << c.command << '\n'
                << result.err;
        }
        EXPECT_EQ(leftovers(), 0);
    }

    std::filesystem::path folder_;
    uint64_t largestFile_ = 0;  // as start() takes it
};

}  // namespace lumoxa_test
