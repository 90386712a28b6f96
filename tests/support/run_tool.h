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

#include "tests/support/profile_bytes.h"

namespace lumoxa_test {

inline constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

/// What a run of the tool came to.
struct Result {
    int exitCode = -1, signal = 0;
    long peakKilobytes = 0;
    std::string out, err;
};

/// A test with a folder for the files that it hands to the tool.
class ToolRun : public testing::Test {
  protected:
    void SetUp() override {
        std::string pattern =
            (std::filesystem::temp_directory_path() / "lumoxa-tool-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder_ = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::string path(const std::string& name) const { return (folder_ / name).string(); }
    void save(const std::string& name, const Bytes& bytes) const {
        std::ofstream(path(name), std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<long>(bytes.size()));
    }
    std::string text(const std::string& name) const {
        std::ostringstream all;
        all << std::ifstream(path(name)).rdbuf();
        return all.str();
    }

    pid_t start(const std::vector<std::string>& arguments, const std::string& input = "") const {
        save("stdin", Bytes(input.begin(), input.end()));
        std::vector<const char*> argv = {LUMOXA_TOOL_PATH};
        for (const std::string& argument : arguments)
            argv.push_back(argument.c_str());
        argv.push_back(nullptr);
        const std::string in = path("stdin"), out = path("stdout"), err = path("stderr");
        const pid_t child = fork();
        if (child != 0) return child;
        dup2(open(in.c_str(), O_RDONLY), 0);
        dup2(open(out.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
        dup2(open(err.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
        for (const int number : kSignals)
            std::signal(number, SIG_DFL);  // nohup ./dev test
        execv(argv[0], const_cast<char**>(argv.data()));
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
    Result run(const std::vector<std::string>& arguments, const std::string& input = "") const {
        return finish(start(arguments, input));
    }

    std::filesystem::path folder_;
};

}  // namespace lumoxa_test
