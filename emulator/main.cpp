// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/Arguments.h"
#include "emulator/CommandTable.h"
#include "emulator/EmulatorClient.h"
#include "emulator/ProgramDirectory.h"

#include <csignal>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <glib-unix.h>
#include <optional>
#include <unistd.h>

namespace {

constexpr int wrongUse = 2;

std::string defaultSocketPath()
{
    const char *runtimeDirectory = std::getenv("XDG_RUNTIME_DIR");
    const std::filesystem::path directory = runtimeDirectory != nullptr && *runtimeDirectory != 0
                                                ? std::filesystem::path(runtimeDirectory)
                                                : std::filesystem::temp_directory_path();
    return directory / ("postal-scale-emulator-" + std::to_string(getpid()) + ".socket");
}

template <int Signal> gboolean passOn(gpointer emulator)
{
    static_cast<Emulator *>(emulator)->raiseInChild(Signal);
    return G_SOURCE_CONTINUE;
}

void passSignalsOn(Emulator &emulator)
{
    g_unix_signal_add(SIGTERM, passOn<SIGTERM>, &emulator);
    g_unix_signal_add(SIGINT, passOn<SIGINT>, &emulator);
    g_unix_signal_add(SIGHUP, passOn<SIGHUP>, &emulator);
}

std::string chooseSocket(const Arguments &arguments)
{
    if (!arguments.socketPath.empty())
        return std::filesystem::absolute(arguments.socketPath);
    const std::string path = defaultSocketPath();
    std::fprintf(stderr, "postal-scale-emulator: commands on %s\n", path.c_str());
    return path;
}

void prepare(EmulatedScale &scale, const Arguments &arguments)
{
    scale.model.setType(arguments.type);
    scale.model.setCapacity(arguments.capacity);
    scale.model.setLoad(arguments.weight);
    if (arguments.atStart == Arguments::AtStart::Plugged)
        scale.plug();
}

/// Outside of what it controls.
std::unique_ptr<ChildProcess> startWindow(const Environment &environment,
                                          const std::string &socketPath)
{
    const std::string program = besideThisProgram("postal-scale-emulator-window");
    return std::make_unique<ChildProcess>(std::vector{program, socketPath}, environment,
                                          [](int) {});
}

int run(const Arguments &arguments)
{
    const Environment outside = currentEnvironment();
    const std::string socketPath = chooseSocket(arguments);
    Emulator emulator;
    const CommandServer server(socketPath, [&](const std::string &line, const auto &reply) {
        runCommand(emulator, line, reply);
    });
    prepare(emulator.scale, arguments);
    passSignalsOn(emulator);

    std::optional<int> status;
    Environment inside = emulator.environment();
    inside[emulatorSocketVariable] = socketPath;
    emulator.child = std::make_unique<ChildProcess>(arguments.command, inside,
                                                    [&status](int code) { status = code; });
    std::unique_ptr<ChildProcess> window;
    if (arguments.window == Arguments::Window::Control)
        window = startWindow(outside, socketPath);
    while (!status)
        g_main_context_iteration(nullptr, TRUE);
    return *status;
}

} // namespace

int main(int argc, char *argv[])
{
    try {
        return run(parseArguments({argv + 1, static_cast<std::size_t>(argc - 1)}));
    } catch (const std::invalid_argument &problem) {
        std::fprintf(stderr, "postal-scale-emulator: %s\n%s", problem.what(), usage);
        return wrongUse;
    } catch (const std::exception &problem) {
        std::fprintf(stderr, "postal-scale-emulator: %s\n", problem.what());
        return wrongUse;
    }
}
