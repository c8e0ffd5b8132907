// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "emulator/EmulatorClient.h"

#include <cerrno>
#include <cstdlib>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

std::string socketFromEnvironment()
{
    const char *path = std::getenv(emulatorSocketVariable);
    if (path == nullptr)
        throw std::runtime_error("not started by postal-scale-emulator");
    return path;
}

int connectTo(const std::string &path)
{
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw std::runtime_error("too long for a socket: " + path);
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0) {
        close(descriptor);
        throw std::runtime_error("no emulator at " + path);
    }
    return descriptor;
}

} // namespace

EmulatorClient::EmulatorClient(const std::string &socketPath)
    : m_descriptor(connectTo(socketPath))
{
}

EmulatorClient::EmulatorClient()
    : EmulatorClient(socketFromEnvironment())
{
}

EmulatorClient::~EmulatorClient()
{
    close(m_descriptor);
}

std::string EmulatorClient::request(const std::string &command)
{
    const std::string line = command + '\n';
    if (send(m_descriptor, line.data(), line.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(line.size()))
        throw std::runtime_error("the emulator is gone");
    std::string answer = readLine();
    if (answer.starts_with("error"))
        throw std::runtime_error(command + ": " + answer);
    return answer;
}

std::vector<std::string> EmulatorClient::requestList(const std::string &command)
{
    const int count = std::stoi(request(command));
    std::vector<std::string> lines;
    for (int index = 0; index < count; ++index)
        lines.push_back(readLine());
    return lines;
}

std::string EmulatorClient::readLine()
{
    std::size_t end = std::string::npos;
    while ((end = m_incoming.find('\n')) == std::string::npos) {
        char buffer[4096];
        const ssize_t length = read(m_descriptor, buffer, sizeof buffer);
        if (length < 0 && errno == EINTR)
            continue;
        if (length <= 0)
            throw std::runtime_error("the emulator is gone");
        m_incoming.append(buffer, static_cast<std::size_t>(length));
    }
    std::string line = m_incoming.substr(0, end);
    m_incoming.erase(0, end + 1);
    return line;
}
