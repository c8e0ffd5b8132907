// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#pragma once

#include <QString>
#include <sys/socket.h>
#include <sys/un.h>

/// A socket's file, as the system takes it.
class LocalAddress
{
public:
    explicit LocalAddress(const QString &path);

    /// False where the path is empty, or longer than the system allows: some 100 bytes.
    bool isUsable() const { return m_isUsable; }

    /// 0, or the error's number.
    int bind(int descriptor) const;
    /// The same. On a socket that does not block, EAGAIN: somebody is there, and takes nobody in.
    int connect(int descriptor) const;

private:
    const sockaddr *address() const { return reinterpret_cast<const sockaddr *>(&m_address); }

    sockaddr_un m_address{};
    bool m_isUsable = false;
};

/// That passes by itself: the call is to be tried again, at once or when the socket is ready.
bool isPassingError(int error);
