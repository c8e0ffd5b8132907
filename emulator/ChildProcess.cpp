// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/ChildProcess.h"

#include <csignal>
#include <cstdio>
#include <fstream>
#include <sys/prctl.h>
#include <unistd.h>

namespace {

constexpr int cannotStart = 127;
constexpr int killedBySignal = 128;

/// Runs between fork and exec.
void dieWithParent(gpointer parent)
{
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != GPOINTER_TO_INT(parent))
        _exit(cannotStart);
}

// With the same input, output and open files as this program.
GObjectPointer<GSubprocessLauncher> newLauncher(const Environment &environment)
{
    constexpr auto flags = static_cast<GSubprocessFlags>(G_SUBPROCESS_FLAGS_STDIN_INHERIT |
                                                         G_SUBPROCESS_FLAGS_INHERIT_FDS);
    GObjectPointer<GSubprocessLauncher> launcher(g_subprocess_launcher_new(flags));
    g_subprocess_launcher_set_child_setup(launcher.get(), dieWithParent, GINT_TO_POINTER(getpid()),
                                          nullptr);
    char *nothing[] = {nullptr};
    g_subprocess_launcher_set_environ(launcher.get(), nothing);
    for (const auto &[name, value] : environment)
        g_subprocess_launcher_setenv(launcher.get(), name.c_str(), value.c_str(), TRUE);
    return launcher;
}

int exitCode(GSubprocess *process)
{
    return g_subprocess_get_if_signaled(process) != 0
               ? killedBySignal + g_subprocess_get_term_sig(process)
               : g_subprocess_get_exit_status(process);
}

} // namespace

Environment currentEnvironment()
{
    Environment environment;
    g_auto(GStrv) names = g_listenv();
    for (char **name = names; *name != nullptr; ++name)
        environment[*name] = g_getenv(*name);
    return environment;
}

ChildProcess::ChildProcess(const std::vector<std::string> &command, const Environment &environment,
                           Finished finished)
    : m_watch(g_cancellable_new())
    , m_finished(std::move(finished))
{
    std::vector<const char *> words;
    for (const std::string &word : command)
        words.push_back(word.c_str());
    words.push_back(nullptr);
    g_autoptr(GError) error = nullptr;
    m_process.reset(
        g_subprocess_launcher_spawnv(newLauncher(environment).get(), words.data(), &error));
    if (!m_process) {
        std::fprintf(stderr, "postal-scale-emulator: %s\n", error->message);
        m_finished(cannotStart);
        return;
    }
    const auto ended = [](GObject *process, GAsyncResult *result, gpointer child) {
        if (g_subprocess_wait_finish(G_SUBPROCESS(process), result, nullptr) != 0)
            static_cast<ChildProcess *>(child)->m_finished(exitCode(G_SUBPROCESS(process)));
    };
    g_subprocess_wait_async(m_process.get(), m_watch.get(), ended, this);
}

ChildProcess::~ChildProcess()
{
    if (!m_process)
        return;
    g_cancellable_cancel(m_watch.get());
    g_subprocess_force_exit(m_process.get());
    g_subprocess_wait(m_process.get(), nullptr, nullptr);
}

void ChildProcess::raise(int signal) const
{
    if (m_process)
        g_subprocess_send_signal(m_process.get(), signal);
}

bool ChildProcess::isSignalPending(int signal) const
{
    if (!m_process || signal < 1 || signal >= NSIG)
        return false;
    const char *number = g_subprocess_get_identifier(m_process.get());
    std::ifstream status("/proc/" + std::string(number == nullptr ? "" : number) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("ShdPnd:"))
            return (std::stoull(line.substr(7), nullptr, 16) >> (signal - 1) & 1) != 0;
    }
    return false;
}
