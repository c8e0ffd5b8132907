// SPDX-FileCopyrightText: 2026 Postal Scale contributors
// SPDX-License-Identifier: MIT

#include "console/InstanceLock.h"

#include <QByteArray>
#include <QFile>
#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr mode_t usersOwn = 0600;

} // namespace

InstanceLock::InstanceLock(const QString &path)
    : m_path(path)
{
}

InstanceLock::~InstanceLock()
{
    // The file stays: whoever removed it could remove the one that a next process has just locked.
    if (m_descriptor >= 0)
        close(m_descriptor);
}

InstanceLock::Outcome InstanceLock::tryTake()
{
    if (m_isTaken)
        return Outcome::Taken;
    if (m_descriptor < 0 && !open())
        return Outcome::Impossible;
    if (flock(m_descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK)
            return Outcome::HeldByAnother;
        noteError(errno);
        return Outcome::Impossible;
    }
    m_isTaken = true;
    // For people, and for --doctor; nobody else relies on it.
    const QByteArray process = QByteArray::number(static_cast<qint64>(getpid())) + '\n';
    const bool isNoted =
        ftruncate(m_descriptor, 0) == 0 &&
        pwrite(m_descriptor, process.constData(), static_cast<size_t>(process.size()), 0) > 0;
    Q_UNUSED(isNoted)
    return Outcome::Taken;
}

qint64 InstanceLock::owner() const
{
    if (m_isTaken)
        return getpid();
    const int descriptor = ::open(QFile::encodeName(m_path).constData(),
                                  O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return 0;
    std::array<char, 16> text{};
    const bool isHeld = flock(descriptor, LOCK_SH | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    const ssize_t length = pread(descriptor, text.data(), text.size() - 1, 0);
    close(descriptor);
    if (!isHeld || length <= 0)
        return 0;
    return QByteArray(text.data()).split('\n').constFirst().toLongLong();
}

bool InstanceLock::open()
{
    m_descriptor = ::open(QFile::encodeName(m_path).constData(),
                          O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, usersOwn);
    const int error = errno;
    struct stat facts = {};
    if (m_descriptor >= 0 && fstat(m_descriptor, &facts) == 0 && S_ISREG(facts.st_mode))
        return true;
    if (m_descriptor >= 0)
        close(m_descriptor);
    const bool isOther = m_descriptor >= 0 || error == EISDIR || error == ELOOP;
    m_descriptor = -1;
    if (isOther)
        m_trouble = QStringLiteral("%1 is not a regular file").arg(m_path);
    else
        noteError(error);
    return false;
}

void InstanceLock::noteError(int number)
{
    m_trouble = QStringLiteral("%1: %2").arg(m_path, QString::fromLocal8Bit(std::strerror(number)));
}
