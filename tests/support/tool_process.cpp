// SPDX-License-Identifier: Apache-2.0
#include "tests/support/tool_process.h"

#if defined(_WIN32)
#include <array>

#include <windows.h>
#else
#include <csignal>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace lumoxa_test {

namespace fs = std::filesystem;

#if defined(_WIN32)

Process start(const std::vector<std::string>& words, const fs::path& folder, uint64_t) {
    std::wstring line;
    for (const std::string& word : words)
        line += (line.empty() ? L"\"" : L" \"") +
                fs::path(std::u8string(word.begin(), word.end())).wstring() + L'"';
    SECURITY_ATTRIBUTES inherited = {sizeof inherited, nullptr, TRUE};
    const auto open = [&](const char* name, DWORD access, DWORD disposition) {
        return CreateFileW((folder / name).c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE,
                           &inherited, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
    };
    STARTUPINFOW info = {};
    info.cb = sizeof info;
    info.dwFlags = STARTF_USESTDHANDLES;
    info.hStdInput = open("stdin", GENERIC_READ, OPEN_EXISTING);
    info.hStdOutput = open("stdout", GENERIC_WRITE, CREATE_ALWAYS);
    info.hStdError = open("stderr", GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process = {};
    const BOOL started = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr,
                                        folder.c_str(), &info, &process);
    for (HANDLE handle : std::array{info.hStdInput, info.hStdOutput, info.hStdError})
        CloseHandle(handle);
    if (started == FALSE) return 0;
    CloseHandle(process.hThread);
    return reinterpret_cast<Process>(process.hProcess);
}

ProcessEnd waitFor(Process process) {
    auto* const handle = reinterpret_cast<HANDLE>(process);
    DWORD code = 0;
    ProcessEnd end;
    if (WaitForSingleObject(handle, INFINITE) == WAIT_OBJECT_0 && GetExitCodeProcess(handle, &code))
        end.exitCode = static_cast<int>(code);
    CloseHandle(handle);
    return end;
}

#else

Process start(const std::vector<std::string>& words, const fs::path& folder, uint64_t largestFile) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (const std::string& word : words)
        argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    const pid_t child = fork();
    if (child != 0) return child;
    if (chdir(folder.c_str()) != 0) _exit(126);
    dup2(open("stdin", O_RDONLY), 0);
    dup2(open("stdout", O_WRONLY | O_CREAT | O_TRUNC, 0600), 1);
    dup2(open("stderr", O_WRONLY | O_CREAT | O_TRUNC, 0600), 2);
    for (const int number : {SIGINT, SIGTERM, SIGHUP})
        std::signal(number, SIG_DFL);  // nohup ./dev test
    const rlimit limit = {largestFile, largestFile};
    if (largestFile != 0) setrlimit(RLIMIT_FSIZE, &limit);
    std::signal(SIGXFSZ, SIG_IGN);
    execv(argv[0], argv.data());
    _exit(127);
}

ProcessEnd waitFor(Process process) {
    int status = 0;
    rusage usage = {};
    wait4(static_cast<pid_t>(process), &status, 0, &usage);
    ProcessEnd end;
    if (WIFEXITED(status)) end.exitCode = WEXITSTATUS(status);
    if (WIFSIGNALED(status)) end.signal = WTERMSIG(status);
    end.peakKilobytes = usage.ru_maxrss;
    return end;
}

#endif

}  // namespace lumoxa_test
