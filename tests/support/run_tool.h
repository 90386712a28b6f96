// SPDX-License-Identifier: Apache-2.0
//
// Runs the command-line tool as a user or a script does, in a folder of its own.
#pragma once

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vips/vips.h>

#include "tests/support/real_profiles.h"
#include "tests/support/xforms.h"

namespace lumoxa_test {

inline constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// What a run of the tool came to.
struct Result {
    int exitCode = -1, signal = 0;
    long peakKilobytes = 0;
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

struct Picture {
    int bands = 0;
    VipsBandFormat format = VIPS_FORMAT_NOTSET;
    VipsInterpretation meaning = VIPS_INTERPRETATION_ERROR;
    bool hasProfile = false;
    std::vector<double> samples;
};

/// A test with a folder, in which the tool runs and which its file names are relative to.
class ToolRun : public testing::Test {
  protected:
    void SetUp() override {
        ASSERT_EQ(VIPS_INIT("lumoxa_tool_tests"), 0);
        vips_cache_set_max(0);  // files change under their names
        std::string pattern =
            (std::filesystem::temp_directory_path() / "lumoxa-tool-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
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

    // A ramp from left to right, each band ahead of the one before; the last of 2 or 4 is alpha.
    void saveImage(const std::string& name, int bands, bool sixteenBits = false, int width = 256,
                   int height = 1, double ahead = 10) const {
        const size_t count = static_cast<size_t>(bands);
        std::vector<double> gain(count, sixteenBits ? 200 : 1), offset(count);
        for (size_t band = 0; band < count; ++band)
            offset[band] = ahead * static_cast<double>(band);
        const auto meaning = bands < 3     ? VIPS_INTERPRETATION_B_W
                             : sixteenBits ? VIPS_INTERPRETATION_RGB16
                                           : VIPS_INTERPRETATION_sRGB;
        VipsImage *steps[5] = {}, **at = steps;
        ASSERT_EQ(vips_xyz(at, width, height, nullptr), 0);
        ASSERT_EQ(vips_extract_band(at[0], at + 1, 0, nullptr), 0);
        ASSERT_EQ(vips_linear(at[1], at + 2, gain.data(), offset.data(), bands, nullptr), 0);
        ASSERT_EQ(
            vips_cast(at[2], at + 3, sixteenBits ? VIPS_FORMAT_USHORT : VIPS_FORMAT_UCHAR, nullptr),
            0);
        ASSERT_EQ(vips_copy(at[3], at + 4, "interpretation", meaning, nullptr), 0);
        EXPECT_EQ(vips_image_write_to_file(at[4], path(name).c_str(), nullptr), 0);
        for (VipsImage* step : steps)
            g_object_unref(step);
    }
    Picture picture(const std::string& name) const {
        VipsImage *file = vips_image_new_from_file(path(name).c_str(), nullptr), *cast = nullptr;
        size_t size = 0;
        if (file == nullptr || vips_cast(file, &cast, VIPS_FORMAT_DOUBLE, nullptr) != 0) return {};
        auto* const data = static_cast<double*>(vips_image_write_to_memory(cast, &size));
        const Picture result = {vips_image_get_bands(file), vips_image_get_format(file),
                                vips_image_get_interpretation(file),
                                vips_image_get_typeof(file, VIPS_META_ICC_NAME) != 0,
                                std::vector<double>(data, data + size / sizeof(double))};
        g_free(data);
        g_object_unref(cast);
        g_object_unref(file);
        return result;
    }

    // The words of a command are separated by single blanks.
    pid_t start(const std::string& command, const std::string& input = "") const {
        save("stdin", input);
        std::vector<std::string> words = {LUMOXA_TOOL_PATH};
        std::istringstream in(command);
        for (std::string word; std::getline(in, word, ' ');)
            words.push_back(word);
        std::vector<char*> argv;
        for (std::string& word : words)
            argv.push_back(word.data());
        argv.push_back(nullptr);
        const pid_t child = fork();
        if (child != 0) return child;
        if (chdir(folder_.c_str()) != 0) _exit(126);
        dup2(open("stdin", O_RDONLY), 0);
        dup2(open("stdout", O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
        dup2(open("stderr", O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
        for (const int number : kSignals)
            std::signal(number, SIG_DFL);  // nohup ./dev test
        const rlimit limit = {largestFile_, largestFile_};
        if (largestFile_ != 0) setrlimit(RLIMIT_FSIZE, &limit);
        std::signal(SIGXFSZ, SIG_IGN);
        execv(argv[0], argv.data());
        _exit(127);
    }
    Result finish(pid_t child) const {
        int status = 0;
        rusage usage = {};
        wait4(child, &status, 0, &usage);
        Result result;
        if (WIFEXITED(status)) result.exitCode = WEXITSTATUS(status);
        if (WIFSIGNALED(status)) result.signal = WTERMSIG(status);
        result.peakKilobytes = usage.ru_maxrss;
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
    rlim_t largestFile_ = 0;  // where a file ends as on a disk that is full there
};

}  // namespace lumoxa_test
