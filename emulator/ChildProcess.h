// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/GObjectPointer.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

using Environment = std::map<std::string, std::string>;

Environment currentEnvironment();

/// A started program that does not outlive this one.
class ChildProcess
{
public:
    /// With the exit status, or 128 and the number of the signal that ended it.
    using Finished = std::function<void(int status)>;

    /// Finds the command as a shell does; one that cannot be started ends with 127, before this
    /// returns.
    ChildProcess(const std::vector<std::string> &command, const Environment &environment,
                 Finished finished);
    /// Ends it at once if it is still running.
    ~ChildProcess();
    ChildProcess(const ChildProcess &) = delete;
    ChildProcess &operator=(const ChildProcess &) = delete;

    void raise(int signal) const;
    /// Every thread of it that could take the signal blocks it.
    bool isSignalPending(int signal) const;

private:
    GObjectPointer<GSubprocess> m_process; ///< nothing: it could not be started
    GObjectPointer<GCancellable> m_watch;
    Finished m_finished;
};
