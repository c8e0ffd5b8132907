// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/UeventSender.h"

#include <arpa/inet.h>
#include <cstring>
#include <filesystem>
#include <gio/gunixsocketaddress.h>
#include <glib-unix.h>
#include <optional>
#include <sys/stat.h>

namespace {

/// The head of a message between the udev daemon and libudev. Numbers that socket filters look
/// at are in network order.
struct MessageHeader
{
    char prefix[8] = "libudev";
    std::uint32_t magic = htonl(0xfeedcafe);
    std::uint32_t headerSize = sizeof(MessageHeader);
    std::uint32_t propertiesOffset = sizeof(MessageHeader);
    std::uint32_t propertiesLength = 0;
    std::uint32_t subsystemHash = 0;
    std::uint32_t deviceTypeHash = 0;
    std::uint32_t tagBloomHigh = 0;
    std::uint32_t tagBloomLow = 0;
};

/// MurmurHash2 with seed 0: the hash by which libudev's socket filters compare names.
std::uint32_t murmurHash(const std::string &text)
{
    constexpr std::uint32_t multiplier = 0x5bd1e995;
    constexpr int shift = 24;
    auto hash = static_cast<std::uint32_t>(text.size());
    std::size_t position = 0;
    for (; position + 4 <= text.size(); position += 4) {
        std::uint32_t block = 0;
        std::memcpy(&block, text.data() + position, 4);
        block *= multiplier;
        block ^= block >> shift;
        hash = hash * multiplier ^ block * multiplier;
    }
    if (position < text.size()) {
        std::uint32_t rest = 0;
        std::memcpy(&rest, text.data() + position, text.size() - position);
        hash = (hash ^ rest) * multiplier;
    }
    hash ^= hash >> 13;
    hash *= multiplier;
    return hash ^ hash >> 15;
}

std::string properties(const Uevent &uevent, std::uint64_t sequenceNumber)
{
    std::string list;
    const auto add = [&list](const char *key, const std::string &value) {
        list += std::string(key) + '=' + value + '\0';
    };
    add("ACTION", uevent.action);
    add("DEVPATH", uevent.devicePath);
    add("SUBSYSTEM", uevent.subsystem);
    add("SEQNUM", std::to_string(sequenceNumber));
    add("USEC_INITIALIZED", std::to_string(g_get_monotonic_time()));
    if (!uevent.deviceType.empty())
        add("DEVTYPE", uevent.deviceType);
    if (!uevent.node.empty()) {
        add("DEVNAME", uevent.node);
        add("MAJOR", std::to_string(uevent.major));
        add("MINOR", std::to_string(uevent.minor));
    }
    return list;
}

std::string wireMessage(const Uevent &uevent, std::uint64_t sequenceNumber)
{
    const std::string list = properties(uevent, sequenceNumber);
    MessageHeader header;
    header.propertiesLength = static_cast<std::uint32_t>(list.size());
    header.subsystemHash = htonl(murmurHash(uevent.subsystem));
    if (!uevent.deviceType.empty())
        header.deviceTypeHash = htonl(murmurHash(uevent.deviceType));
    return std::string(reinterpret_cast<const char *>(&header), sizeof header) + list;
}

std::optional<ino_t> inode(const std::string &path)
{
    struct stat status = {};
    if (stat(path.c_str(), &status) != 0)
        return std::nullopt;
    return status.st_ino;
}

/// Nothing when the monitor is gone.
GObjectPointer<GSocket> connectTo(const std::string &monitorPath)
{
    g_autoptr(GSocketAddress) address = g_unix_socket_address_new(monitorPath.c_str());
    GObjectPointer<GSocket> socket(g_socket_new(G_SOCKET_FAMILY_UNIX, G_SOCKET_TYPE_DATAGRAM,
                                                G_SOCKET_PROTOCOL_DEFAULT, nullptr));
    if (!socket || g_socket_connect(socket.get(), address, nullptr, nullptr) == 0)
        return nullptr;
    g_socket_set_blocking(socket.get(), FALSE);
    return socket;
}

enum class Delivery { Done, SocketFull, MonitorGone };

Delivery deliver(GSocket *socket, const std::string &message)
{
    g_autoptr(GError) error = nullptr;
    if (g_socket_send(socket, message.data(), message.size(), nullptr, &error) >= 0)
        return Delivery::Done;
    return g_error_matches(error, G_IO_ERROR, G_IO_ERROR_WOULD_BLOCK) ? Delivery::SocketFull
                                                                      : Delivery::MonitorGone;
}

} // namespace

UeventSender::UeventSender(std::string directory)
    : m_directory(std::move(directory))
{
}

UeventSender::~UeventSender()
{
    for (const auto &[monitor, backlog] : m_backlogs)
        g_source_remove(backlog.watch);
}

void UeventSender::send(const Uevent &uevent)
{
    const std::string message = wireMessage(uevent, ++m_sequenceNumber);
    // The preloaded library binds one socket per monitor and names it after its descriptor.
    for (const auto &entry : std::filesystem::directory_iterator(m_directory)) {
        if (entry.path().filename().string().starts_with("event"))
            sendTo(entry.path(), message);
    }
}

void UeventSender::sendTo(const std::string &monitorPath, const std::string &message)
{
    const std::optional<ino_t> monitor = inode(monitorPath);
    if (!monitor)
        return;
    if (const auto found = m_backlogs.find(*monitor); found != m_backlogs.end()) {
        found->second.messages.push_back(message);
        return;
    }
    GObjectPointer<GSocket> socket = connectTo(monitorPath);
    if (socket && deliver(socket.get(), message) == Delivery::SocketFull)
        keepForLater(*monitor, std::move(socket), message);
}

void UeventSender::keepForLater(ino_t monitor, GObjectPointer<GSocket> socket,
                                const std::string &message)
{
    const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
        auto &backlog = *static_cast<Backlog *>(pointer);
        return backlog.sender->flush(backlog) ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    Backlog &backlog = m_backlogs[monitor];
    backlog.sender = this;
    backlog.monitor = monitor;
    backlog.messages.push_back(message);
    backlog.watch = g_unix_fd_add(g_socket_get_fd(socket.get()), G_IO_OUT, callback, &backlog);
    backlog.socket = std::move(socket);
}

bool UeventSender::flush(Backlog &backlog)
{
    while (!backlog.messages.empty()) {
        const Delivery delivery = deliver(backlog.socket.get(), backlog.messages.front());
        if (delivery == Delivery::SocketFull)
            return true;
        if (delivery == Delivery::MonitorGone)
            break;
        backlog.messages.pop_front();
    }
    m_backlogs.erase(backlog.monitor);
    return false;
}
