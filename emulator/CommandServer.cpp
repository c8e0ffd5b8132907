// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/CommandServer.h"

#include <cerrno>
#include <glib-unix.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <system_error>
#include <unistd.h>

namespace {

std::system_error failure(int error, const std::string &what)
{
    return std::system_error(error, std::generic_category(), what);
}

sockaddr_un addressOf(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw failure(ENAMETOOLONG, path);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    return address;
}

void removeAbandoned(const std::string &path)
{
    struct stat status = {};
    if (lstat(path.c_str(), &status) != 0)
        return;
    if (!S_ISSOCK(status.st_mode))
        throw failure(EEXIST, path);
    const sockaddr_un address = addressOf(path);
    const int probe = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const int result = connect(probe, reinterpret_cast<const sockaddr *>(&address), sizeof address);
    close(probe);
    if (result == 0)
        throw failure(EADDRINUSE, path);
    unlink(path.c_str());
}

int listenOn(const std::string &path)
{
    const sockaddr_un address = addressOf(path);
    removeAbandoned(path);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    if (bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0 ||
        listen(listener, SOMAXCONN) != 0)
        throw failure(errno, path);
    return listener;
}

} // namespace

class CommandServer::Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(int socket, const Handler &lineHandler, std::function<void()> whenClosed)
        : descriptor(socket)
        , handler(lineHandler)
        , closed(std::move(whenClosed))
    {
        const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
            return static_cast<Connection *>(pointer)->receive();
        };
        readWatch = g_unix_fd_add(socket, G_IO_IN, callback, this);
    }

    ~Connection()
    {
        if (readWatch != 0)
            g_source_remove(readWatch);
        if (writeWatch != 0)
            g_source_remove(writeWatch);
        close(descriptor);
    }

private:
    gboolean receive()
    {
        char buffer[4096];
        const ssize_t length = read(descriptor, buffer, sizeof buffer);
        if (length < 0 && errno == EAGAIN)
            return G_SOURCE_CONTINUE;
        if (length <= 0) {
            readWatch = 0;
            closed(); // ends this object
            return G_SOURCE_REMOVE;
        }
        incoming.append(buffer, static_cast<std::size_t>(length));
        processLines();
        return G_SOURCE_CONTINUE;
    }

    void processLines()
    {
        while (state == State::Idle) {
            const std::size_t end = incoming.find('\n');
            if (end == std::string::npos)
                return;
            std::string line = incoming.substr(0, end);
            incoming.erase(0, end + 1);
            if (line.ends_with('\r'))
                line.pop_back();
            state = State::AwaitingReply;
            handler(line, [self = weak_from_this()](const std::string &text) {
                if (const auto connection = self.lock())
                    connection->reply(text);
            });
        }
    }

    void reply(const std::string &text)
    {
        outgoing += text + '\n';
        transmit();
        state = State::Idle;
        processLines();
    }

    /// False: nothing is left to send.
    bool transmit()
    {
        const ssize_t sent = send(descriptor, outgoing.data(), outgoing.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno != EAGAIN)
            outgoing.clear(); // The client is gone, which reading will tell.
        else if (sent > 0)
            outgoing.erase(0, static_cast<std::size_t>(sent));
        if (!outgoing.empty() && writeWatch == 0) {
            const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
                auto *connection = static_cast<Connection *>(pointer);
                if (connection->transmit())
                    return G_SOURCE_CONTINUE;
                connection->writeWatch = 0;
                return G_SOURCE_REMOVE;
            };
            writeWatch = g_unix_fd_add(descriptor, G_IO_OUT, callback, this);
        }
        return !outgoing.empty();
    }

    enum class State { Idle, AwaitingReply };

    int descriptor;
    const Handler &handler;
    std::function<void()> closed;
    unsigned readWatch = 0;
    unsigned writeWatch = 0;
    State state = State::Idle;
    std::string incoming;
    std::string outgoing;
};

CommandServer::CommandServer(std::string socketPath, Handler lineHandler)
    : path(std::move(socketPath))
    , handler(std::move(lineHandler))
    , listener(listenOn(path))
{
    const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
        static_cast<CommandServer *>(pointer)->accept();
        return G_SOURCE_CONTINUE;
    };
    watch = g_unix_fd_add(listener, G_IO_IN, callback, this);
}

CommandServer::~CommandServer()
{
    g_source_remove(watch);
    close(listener);
    unlink(path.c_str());
}

void CommandServer::accept()
{
    const int descriptor = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK);
    if (descriptor < 0)
        return;
    const auto place = connections.emplace(connections.end());
    *place = std::make_shared<Connection>(descriptor, handler,
                                          [this, place] { connections.erase(place); });
}
