// SPDX-FileCopyrightText: 2026 The Tourwright developers
// SPDX-License-Identifier: MIT

#include "tests/pnomaker/ToolRun.h"

#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace pnotest {
namespace {

/// Starts the tool; its outputs go to the two descriptors.
pid_t start(const std::vector<std::string>& words, int out, int err, unsigned long fileLimit_bytes)
{
    std::vector<char*> arguments = {const_cast<char*>(TW_PNOTOOL)};
    for (const std::string& word : words)
        arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    const pid_t child = fork();
    if (child != 0) return child;
    dup2(out, STDOUT_FILENO);
    dup2(err, STDERR_FILENO);
    if (fileLimit_bytes != 0) {
        const rlimit limit = {fileLimit_bytes, fileLimit_bytes};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    execv(TW_PNOTOOL, arguments.data());
    _exit(127);
}

std::string drain(int descriptor)
{
    std::string text;
    char buffer[4096];
    for (ssize_t size = 0; (size = read(descriptor, buffer, sizeof(buffer))) > 0;)
        text.append(buffer, static_cast<std::size_t>(size));
    close(descriptor);
    return text;
}

} // namespace

ToolRun runTool(const std::vector<std::string>& words, unsigned long fileLimit_bytes)
{
    int out[2], err[2];
    if (pipe2(out, O_CLOEXEC) != 0 || pipe2(err, O_CLOEXEC) != 0) return {};
    const pid_t child = start(words, out[1], err[1], fileLimit_bytes);
    close(out[1]);
    close(err[1]);
    ToolRun run;
    std::thread errors([&] { run.err = drain(err[0]); });
    run.out = drain(out[0]);
    errors.join();
    int status = 0;
    rusage usage = {};
    wait4(child, &status, 0, &usage);
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    run.peak_kib = usage.ru_maxrss;
    return run;
}

int runToolUntilOutputAppears(const std::vector<std::string>& words, const std::string& folder)
{
    const int watch = inotify_init1(IN_CLOEXEC);
    inotify_add_watch(watch, folder.c_str(), IN_CREATE);
    const int silence = open("/dev/null", O_WRONLY | O_CLOEXEC);
    const pid_t child = start(words, silence, silence, 0);
    char event[4096];
    if (read(watch, event, sizeof(event)) > 0) kill(child, SIGTERM);
    int status = 0;
    waitpid(child, &status, 0);
    close(watch);
    close(silence);
    return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
}

} // namespace pnotest
