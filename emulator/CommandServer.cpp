// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/CommandServer.h"

#include <filesystem>
#include <gio/gunixsocketaddress.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

/// One client: its line is awaited, then answered, over and over. Whatever is due next holds it.
class Connection : public std::enable_shared_from_this<Connection>
{
public:
    Connection(GSocketConnection *connection, GCancellable *end, CommandServer::Handler handler)
        : m_stream(G_IO_STREAM(g_object_ref(connection)))
        , m_lines(g_data_input_stream_new(g_io_stream_get_input_stream(m_stream.get())))
        , m_end(G_CANCELLABLE(g_object_ref(end)))
        , m_handler(std::move(handler))
    {
    }

    void awaitLine()
    {
        const auto callback = [](GObject *, GAsyncResult *result, gpointer holder) {
            release(holder)->lineRead(result);
        };
        g_data_input_stream_read_upto_async(m_lines.get(), "\n", 1, G_PRIORITY_DEFAULT, m_end.get(),
                                            callback, hold());
    }

private:
    using Pointer = std::shared_ptr<Connection>;

    Pointer *hold() { return new Pointer(shared_from_this()); }

    static Pointer release(gpointer holder)
    {
        return *std::unique_ptr<Pointer>(static_cast<Pointer *>(holder));
    }

    // What the stream ends with may be half a line: only a newline makes it one.
    void lineRead(GAsyncResult *result)
    {
        gsize length = 0;
        g_autoptr(GError) error = nullptr;
        g_autofree char *line =
            g_data_input_stream_read_upto_finish(m_lines.get(), result, &length, &error);
        if (error == nullptr)
            g_data_input_stream_read_byte(m_lines.get(), nullptr, &error);
        if (error != nullptr)
            return;
        m_handler(std::string(std::string_view(line, length)),
                  [self = shared_from_this()](const std::string &text) { self->send(text); });
    }

    void send(const std::string &text)
    {
        const auto callback = [](GObject *output, GAsyncResult *result, gpointer holder) {
            const Pointer connection = release(holder);
            if (g_output_stream_write_all_finish(G_OUTPUT_STREAM(output), result, nullptr, nullptr))
                connection->awaitLine();
        };
        m_answer = text + '\n';
        g_output_stream_write_all_async(g_io_stream_get_output_stream(m_stream.get()),
                                        m_answer.data(), m_answer.size(), G_PRIORITY_DEFAULT,
                                        m_end.get(), callback, hold());
    }

    GObjectPointer<GIOStream> m_stream;
    GObjectPointer<GDataInputStream> m_lines;
    GObjectPointer<GCancellable> m_end;
    CommandServer::Handler m_handler;
    std::string m_answer;
};

void removeAbandoned(const std::string &path, GSocketAddress *address)
{
    g_autoptr(GSocket) probe = g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_STREAM,
                                            G_SOCKET_PROTOCOL_DEFAULT, nullptr);
    const bool isSocket = is_socket(std::filesystem::symlink_status(path));
    if (isSocket && g_socket_connect(probe, address, nullptr, nullptr) == 0)
        std::filesystem::remove(path);
}

void listenOn(GSocketService *service, const std::string &path)
{
    if (path.size() >= sizeof sockaddr_un::sun_path) // GLib would take another path: its beginning.
        throw std::runtime_error(path + ": too long for a socket");
    g_autoptr(GSocketAddress) address = g_unix_socket_address_new(path.c_str());
    removeAbandoned(path, address);
    g_socket_listener_set_backlog(G_SOCKET_LISTENER(service), SOMAXCONN);
    g_autoptr(GError) error = nullptr;
    if (g_socket_listener_add_address(G_SOCKET_LISTENER(service), address, G_SOCKET_TYPE_STREAM,
                                      G_SOCKET_PROTOCOL_DEFAULT, nullptr, nullptr, &error) == 0)
        throw std::runtime_error(path + ": " + error->message);
}

} // namespace

CommandServer::CommandServer(std::string socketPath, Handler handler)
    : m_path(std::move(socketPath))
    , m_handler(std::move(handler))
    , m_end(g_cancellable_new())
    , m_service(g_socket_service_new())
{
    listenOn(m_service.get(), m_path);
    const auto accept = [](GSocketService *, GSocketConnection *connection, GObject *,
                           gpointer pointer) -> gboolean {
        auto *server = static_cast<CommandServer *>(pointer);
        std::make_shared<Connection>(connection, server->m_end.get(), server->m_handler)
            ->awaitLine();
        return TRUE;
    };
    g_signal_connect(m_service.get(), "incoming", G_CALLBACK(+accept), this);
}

CommandServer::~CommandServer()
{
    g_cancellable_cancel(m_end.get());
    g_socket_service_stop(m_service.get());
    g_socket_listener_close(G_SOCKET_LISTENER(m_service.get()));
    unlink(m_path.c_str());
}
