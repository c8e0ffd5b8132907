// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>

/// Takes command lines from any number of clients on a UNIX stream socket.
class CommandServer
{
public:
    /// To be called once per line, now or later, with the text to answer (no newline at its end).
    /// The client's next line is not looked at before.
    using Reply = std::function<void(const std::string &)>;
    using Handler = std::function<void(const std::string &line, Reply reply)>;

    /// Takes the place of a socket that nobody listens on any more. Throws std::system_error.
    CommandServer(std::string socketPath, Handler lineHandler);
    ~CommandServer();
    CommandServer(const CommandServer &) = delete;
    CommandServer &operator=(const CommandServer &) = delete;

private:
    class Connection;

    void accept();

    std::string path;
    Handler handler;
    int listener = -1;
    unsigned watch = 0;
    std::list<std::shared_ptr<Connection>> connections;
};
