// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "sockets/LocalAddress.h"

#include <QFile>
#include <cerrno>
#include <cstring>

LocalAddress::LocalAddress(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    const auto length = static_cast<std::size_t>(name.size());
    // With the zero that ends it.
    m_isUsable = length > 0 && length < sizeof m_address.sun_path;
    m_address.sun_family = AF_UNIX;
    if (m_isUsable)
        std::memcpy(m_address.sun_path, name.constData(), length);
}

int LocalAddress::bind(int descriptor) const
{
    if (!m_isUsable)
        return ENAMETOOLONG;
    return ::bind(descriptor, address(), sizeof m_address) == 0 ? 0 : errno;
}

int LocalAddress::connect(int descriptor) const
{
    if (!m_isUsable)
        return ENAMETOOLONG;
    return ::connect(descriptor, address(), sizeof m_address) == 0 ? 0 : errno;
}

bool isPassingError(int error)
{
    return error == EINTR || error == EAGAIN || error == EWOULDBLOCK;
}
