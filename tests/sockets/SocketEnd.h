// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QByteArray>
#include <array>
#include <sys/socket.h>
#include <unistd.h>
#include <utility>

/// A plain socket, for the end that is not the program's.
class SocketEnd
{
public:
    explicit SocketEnd(int socketDescriptor)
        : descriptor(socketDescriptor)
    {
    }
    ~SocketEnd() { hangUp(); }
    SocketEnd(const SocketEnd &) = delete;
    SocketEnd &operator=(const SocketEnd &) = delete;

    void hangUp()
    {
        if (descriptor >= 0)
            close(std::exchange(descriptor, -1));
    }

    /// The bytes that were taken.
    qsizetype say(const QByteArray &bytes) const
    {
        return ::send(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()),
                      MSG_DONTWAIT | MSG_NOSIGNAL);
    }

    /// What is there, at once.
    QByteArray hear()
    {
        QByteArray heard;
        std::array<char, 65536> bytes;
        for (;;) {
            const ssize_t count = recv(descriptor, bytes.data(), bytes.size(), MSG_DONTWAIT);
            hasEnded = count == 0;
            if (count <= 0)
                return heard;
            heard.append(bytes.data(), count);
        }
    }

    int descriptor;
    bool hasEnded = false; ///< the program's end, when it was last heard
};
