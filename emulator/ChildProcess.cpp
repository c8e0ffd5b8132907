// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ChildProcess.h"

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <glib.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <system_error>
#include <unistd.h>

extern char **environ;

namespace {

constexpr int cannotStart = 127;
constexpr int killedBySignal = 128;

int exitCode(int waitStatus)
{
    return WIFSIGNALED(waitStatus) ? killedBySignal + WTERMSIG(waitStatus)
                                   : WEXITSTATUS(waitStatus);
}

std::vector<char *> pointers(std::vector<std::string> &texts)
{
    std::vector<char *> list;
    for (std::string &text : texts)
        list.push_back(text.data());
    list.push_back(nullptr);
    return list;
}

std::vector<std::string> assignments(const Environment &environment)
{
    std::vector<std::string> list;
    for (const auto &[name, value] : environment)
        list.push_back(name + '=' + value);
    return list;
}

/// Runs between fork and exec: everything it needs has been prepared before.
[[noreturn]] void become(pid_t parent, char *const arguments[], char *const variables[])
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != parent)
        _exit(cannotStart);
    signal(SIGPIPE, SIG_DFL); // GLib ignores it, and that would be inherited.
    execvpe(arguments[0], arguments, variables);
    const char *reason = strerrordesc_np(errno);
    for (const char *text :
         {"postal-scale-emulator: ", const_cast<const char *>(arguments[0]), ": ", reason, "\n"})
        [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, text, strlen(text));
    _exit(cannotStart);
}

} // namespace

Environment currentEnvironment()
{
    Environment environment;
    for (char **entry = environ; *entry != nullptr; ++entry) {
        const std::string assignment = *entry;
        const std::size_t equals = assignment.find('=');
        environment[assignment.substr(0, equals)] = assignment.substr(equals + 1);
    }
    return environment;
}

ChildProcess::ChildProcess(const std::vector<std::string> &command, const Environment &environment,
                           Finished finished)
    : finishedCallback(std::move(finished))
{
    std::vector<std::string> arguments = command;
    std::vector<std::string> variables = assignments(environment);
    const std::vector<char *> argumentList = pointers(arguments);
    const std::vector<char *> variableList = pointers(variables);
    const pid_t self = getpid();
    process = fork();
    if (process < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (process == 0)
        become(self, argumentList.data(), variableList.data());

    const auto ended = [](GPid, gint status, gpointer pointer) {
        auto *child = static_cast<ChildProcess *>(pointer);
        child->process = -1;
        child->watch = 0;
        child->finishedCallback(exitCode(status));
    };
    watch = g_child_watch_add(process, ended, this);
}

ChildProcess::~ChildProcess()
{
    if (process < 0)
        return;
    g_source_remove(watch);
    kill(process, SIGKILL);
    waitpid(process, nullptr, 0);
}

void ChildProcess::raise(int signal) const
{
    if (process > 0)
        kill(process, signal);
}

bool ChildProcess::isSignalPending(int signal) const
{
    std::ifstream status("/proc/" + std::to_string(process) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("ShdPnd:"))
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
    }
    return false;
}
