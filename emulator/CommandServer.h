// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include "emulator/GObjectPointer.h"

#include <functional>
#include <string>

/// Takes command lines from any number of clients on a UNIX stream socket.
class CommandServer
{
public:
    /// To be called once per line, now or later, with the text to answer (no newline at its end).
    /// The client's next line is not looked at before it has been sent.
    using Reply = std::function<void(const std::string &)>;
    using Handler = std::function<void(const std::string &line, Reply reply)>;

    /// Takes the place of a socket that nobody listens on any more. Throws std::runtime_error.
    CommandServer(std::string socketPath, Handler handler);
    ~CommandServer();
    CommandServer(const CommandServer &) = delete;
    CommandServer &operator=(const CommandServer &) = delete;

private:
    std::string m_path;
    Handler m_handler;
    GObjectPointer<GCancellable> m_end;
    GObjectPointer<GSocketService> m_service;
};
