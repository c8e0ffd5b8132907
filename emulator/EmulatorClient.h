// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <string>
#include <vector>

/// Where a program started by the emulator finds its commands.
inline constexpr const char *emulatorSocketVariable = "POSTAL_SCALE_EMULATOR_SOCKET";

/// A connection to the emulator's command socket. Every call waits for the answer; all throw
/// std::runtime_error when the emulator is gone or answers "error".
class EmulatorClient
{
public:
    explicit EmulatorClient(const std::string &socketPath);
    /// To the emulator that has started this program.
    EmulatorClient();
    ~EmulatorClient();
    EmulatorClient(const EmulatorClient &) = delete;
    EmulatorClient &operator=(const EmulatorClient &) = delete;

    /// The one line that answers @p command.
    std::string request(const std::string &command);
    /// The lines after the count, for commands that answer with a list.
    std::vector<std::string> requestList(const std::string &command);

private:
    std::string readLine();

    int m_descriptor = -1;
    std::string m_incoming;
};
