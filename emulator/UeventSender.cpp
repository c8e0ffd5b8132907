// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/UeventSender.h"

#include <arpa/inet.h>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <glib-unix.h>
#include <optional>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

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

/// -1: the monitor is gone.
int connectTo(const std::string &monitorPath)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (monitorPath.size() >= sizeof address.sun_path)
        return -1;
    monitorPath.copy(address.sun_path, sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    const auto *generic = reinterpret_cast<const sockaddr *>(&address);
    if (descriptor >= 0 && connect(descriptor, generic, sizeof address) == 0)
        return descriptor;
    if (descriptor >= 0)
        close(descriptor);
    return -1;
}

enum class Delivery { Done, SocketFull, MonitorGone };

Delivery deliver(int descriptor, const std::string &message)
{
    if (::send(descriptor, message.data(), message.size(), MSG_NOSIGNAL) >= 0)
        return Delivery::Done;
    return errno == EAGAIN ? Delivery::SocketFull : Delivery::MonitorGone;
}

} // namespace

UeventSender::UeventSender(std::string testbedDirectory)
    : directory(std::move(testbedDirectory))
{
}

UeventSender::~UeventSender()
{
    for (auto &[monitor, backlog] : backlogs) {
        g_source_remove(backlog.watch);
        close(backlog.socket);
    }
}

void UeventSender::send(const Uevent &uevent)
{
    const std::string message = wireMessage(uevent, ++sequenceNumber);
    // The preloaded library binds one socket per monitor and names it after its descriptor.
    for (const auto &entry : std::filesystem::directory_iterator(directory)) {
        if (entry.path().filename().string().starts_with("event"))
            sendTo(entry.path(), message);
    }
}

void UeventSender::sendTo(const std::string &monitorPath, const std::string &message)
{
    const std::optional<ino_t> monitor = inode(monitorPath);
    if (!monitor)
        return;
    if (const auto found = backlogs.find(*monitor); found != backlogs.end()) {
        found->second.messages.push_back(message);
        return;
    }
    const int descriptor = connectTo(monitorPath);
    if (descriptor < 0)
        return;
    if (deliver(descriptor, message) == Delivery::SocketFull)
        keepForLater(*monitor, descriptor, message);
    else
        close(descriptor);
}

void UeventSender::keepForLater(ino_t monitor, int socket, const std::string &message)
{
    struct BacklogKey
    {
        UeventSender *sender;
        ino_t monitor;
    };
    auto *key = new BacklogKey{this, monitor};
    const auto destroy = [](gpointer pointer) { delete static_cast<BacklogKey *>(pointer); };
    const auto callback = [](gint, GIOCondition, gpointer pointer) -> gboolean {
        const auto &found = *static_cast<BacklogKey *>(pointer);
        return found.sender->flush(found.monitor) ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
    };
    Backlog &backlog = backlogs[monitor];
    backlog.socket = socket;
    backlog.messages.push_back(message);
    backlog.watch =
        g_unix_fd_add_full(G_PRIORITY_DEFAULT, socket, G_IO_OUT, callback, key, destroy);
}

bool UeventSender::flush(ino_t monitor)
{
    Backlog &backlog = backlogs.at(monitor);
    while (!backlog.messages.empty()) {
        const Delivery delivery = deliver(backlog.socket, backlog.messages.front());
        if (delivery == Delivery::SocketFull)
            return true;
        if (delivery == Delivery::MonitorGone)
            break;
        backlog.messages.pop_front();
    }
    close(backlog.socket);
    backlogs.erase(monitor);
    return false;
}
